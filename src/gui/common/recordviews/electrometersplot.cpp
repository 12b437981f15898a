#include "gui/common/recordviews/electrometersplot.h"

#include "gui/common/recordtext.h"
#include "gui/common/recordviews/channelplot.h"
#include "gui/common/recordviews/plotpicture.h"

#include <QAction>
#include <QInputDialog>

#include <qwt_scale_widget.h>
#include <qwt_text.h>

namespace RecordViews {

namespace {

constexpr int longestComplaint = 100; ///< characters of what isn't a number

const QLatin1String coefficientsKey("coefficients");
const QLatin1String useCoefficientsKey("useCoefficients");

QwtText richText(const QString &text)
{
    return QwtText(text, QwtText::RichText);
}

/// None if any of them isn't a number.
std::vector<double> coefficientsOf(const QVariantList &list)
{
    std::vector<double> coefficients;
    for (const QVariant &element : list) {
        bool isNumber = false;
        coefficients.push_back(element.toDouble(&isNumber));
        if (!isNumber)
            return {};
    }
    return coefficients;
}

} // namespace

ElectrometersPlot::ElectrometersPlot(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_plot(new ChannelPlot(this))
{
    setObjectName(QStringLiteral("electrometersPlotView"));
    setWindowTitle(tr("Electrometer signal plot"));
    m_plot->setPlainAxisTitle(QwtPlot::yLeft, tr("Current (fA)"));
    m_plot->setAccessibleName(windowTitle());
    setWidget(m_plot);
    makeActions();
}

void ElectrometersPlot::makeActions()
{
    auto *const useCorrection = new QAction(tr("Use correction"), this);
    useCorrection->setCheckable(true);
    connect(useCorrection, &QAction::toggled, this, &ElectrometersPlot::setUseCorrection);
    connect(this, &ElectrometersPlot::useCorrectionChanged, useCorrection, &QAction::setChecked);
    auto *const edit = new QAction(tr("Set coefficients..."), this);
    connect(edit, &QAction::triggered, this, &ElectrometersPlot::showEditCoefficients);
    auto *const separator = new QAction(this);
    separator->setSeparator(true);
    auto *const lock = new QAction(tr("Lock axes"), this);
    lock->setCheckable(true);
    connect(lock, &QAction::toggled, m_plot, &RecordPlot::setAxesLocked);
    const auto *const picture = new PlotPicture(m_plot);
    addActions({useCorrection, edit, separator, lock, picture->copyAction(), picture->saveAction()});
    setContextMenuPolicy(Qt::ActionsContextMenu); // the plot's as well, which has none of its own
    for (const int axis : {QwtPlot::xBottom, QwtPlot::yLeft})
        m_plot->axisWidget(axis)->setContextMenuPolicy(Qt::PreventContextMenu); // the right button fits the axis
}

QString ElectrometersPlot::viewName() const
{
    return QStringLiteral("electrometersplot");
}

QVariantMap ElectrometersPlot::setup() const
{
    return {{coefficientsKey, coefficientTexts(m_coefficients)}, {useCoefficientsKey, m_useCorrection}};
}

void ElectrometersPlot::restoreSetup(const QVariantMap &setup)
{
    const QVariant use = setup.value(useCoefficientsKey);
    setCoefficients(coefficientsOf(setup.value(coefficientsKey).toList()));
    setUseCorrection(use.type() == QVariant::Bool && use.toBool());
}

void ElectrometersPlot::refreshSetup()
{
    const auto metadata = uiInfo()->metadata();
    m_plot->setNames(metadata ? QStringList(metadata->electrometerNames.toList()) : QStringList());
}

void ElectrometersPlot::clearTitle()
{
    m_plot->setPlainTitle({});
}

void ElectrometersPlot::refreshRecord()
{
    m_plot->setRecordMoment(record() ? RecordText::moment(*record()) : QString());
    if (!record()) {
        clearTitle();
        m_plot->hideValues();
        m_plot->replot();
        return;
    }
    ElectrometerValues values{record()->currents, record()->rawCurrents, record()->currentVariances};
    if (m_useCorrection) {
        if (correctElectrometers(values, m_coefficients))
            clearTitle();
        else
            m_plot->setTitle(
                richText(tr("<font color='darkred'>Correction not used! Vector size does not match.</font>")));
    }
    m_plot->showValues(values);
    m_plot->replot();
}

// ---- the correction

void ElectrometersPlot::setUseCorrection(bool on)
{
    if (on == m_useCorrection)
        return;
    m_useCorrection = on;
    if (on)
        m_plot->setAxisTitle(QwtPlot::yLeft, richText(tr("<b>Corrected current</b> (fA)")));
    else
        m_plot->setPlainAxisTitle(QwtPlot::yLeft, tr("Current (fA)"));
    clearTitle();
    Q_EMIT useCorrectionChanged(on);
    Q_EMIT setupChanged();
    setRecordStale();
}

void ElectrometersPlot::setCoefficients(const std::vector<double> &coefficients)
{
    if (coefficients == m_coefficients)
        return;
    m_coefficients = coefficients;
    Q_EMIT setupChanged();
    if (m_useCorrection)
        setRecordStale();
}

void ElectrometersPlot::showEditCoefficients()
{
    const QPointer<ElectrometersPlot> self(this);
    const QString question = tr("Correction coefficients:");
    QString label = question;
    QString text = coefficientTexts(m_coefficients).join(QLatin1Char(' '));
    for (;;) {
        bool isAccepted = false;
        text = QInputDialog::getText(this, tr("Correction coefficients"), label, QLineEdit::Normal, text, &isAccepted);
        if (!self || !isAccepted)
            return;
        const Coefficients coefficients = parseCoefficients(text);
        if (coefficients.wrongPart.isEmpty())
            return setCoefficients(coefficients.values);
        label = tr("<b>\"%1\" is not a number. Please fix!</b> <br>%2")
                    .arg(coefficients.wrongPart.left(longestComplaint).toHtmlEscaped(), question);
    }
}

} // namespace RecordViews
