#include "gui/browser/views/opmodeview.h"

#include "columns/setupkeys.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/browser/controls/viewlayout.h"
#include "records/recordflagparser.h"

#include <QFontMetrics>
#include <QLabel>

#include <algorithm>

namespace Tsb {

namespace {
constexpr char opmodeType[] = "opmode";
constexpr char flagType[] = "flag";
constexpr int greatestLabelHeight = 200; ///< a longer message shows its first lines
constexpr int mostCharacters = 4000;     ///< that are shown: megabytes from a file would take seconds to lay out
} // namespace

OpmodeView::OpmodeView(QWidget *parent) : SinglePlotView<OpmodePlot>(parent), m_label(new QLabel(this))
{
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    const int line = m_label->fontMetrics().lineSpacing();
    m_label->setMaximumHeight(greatestLabelHeight / line * line);
    auto *strip = new OpmodePlot(this);
    setPlot(strip);
    viewLayout()->insertRow(0, m_label, nullptr);
    viewLayout()->insertRow(1, nullptr, strip);
    showOpmode();
}

/// The frame that the strip stands in, a line of text, and the label's line.
int OpmodeView::heightOf(int labelHeight) const
{
    const QMargins margins = plot()->contentsMargins();
    return margins.top() + labelHeight + QFontMetrics(font()).height() + margins.bottom();
}

void OpmodeView::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    plot()->setUiInfo(uiInfo);
    SinglePlotView<OpmodePlot>::setUiInfo(std::move(uiInfo));
}

void OpmodeView::setNotes(const RecordNotes *notes)
{
    plot()->setNotes(notes);
}

void OpmodeView::showOpmode()
{
    m_label->hide();
    setFixedHeight(heightOf(0));
    setToolTip(tr("Opmode"));
    plot()->setAccessibleName(tr("Opmode"));
    plot()->showOpmode();
}

void OpmodeView::showFlag(const QString &flagData)
{
    const auto flag = Spectrometer::makeRecordFlag(flagData);
    const QString message = flag->message.left(mostCharacters);
    m_label->setText(message);
    m_label->show();
    setFixedHeight(heightOf(std::min(m_label->sizeHint().height(), m_label->maximumHeight())));
    setToolTip(plainToolTip(message));
    plot()->setAccessibleName(tr("Flag: %1").arg(message.simplified()));
    plot()->showFlag(*flag);
}

QVariant OpmodeView::settings() const
{
    if (plot()->mode() == OpmodePlot::Opmode)
        return QVariantMap{{SetupKeys::type, opmodeType}};
    return QVariantMap{{SetupKeys::type, flagType}, {SetupKeys::flag, plot()->flag().text}};
}

void OpmodeView::setSettings(const QVariant &settings)
{
    const QVariantMap map = settings.toMap();
    const QString type = map.value(SetupKeys::type).toString();
    if (type == QLatin1String(opmodeType))
        showOpmode();
    else if (type == QLatin1String(flagType) && !map.value(SetupKeys::flag).toString().isEmpty())
        showFlag(map.value(SetupKeys::flag).toString());
}

} // namespace Tsb
