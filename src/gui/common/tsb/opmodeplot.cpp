#include "gui/common/tsb/opmodeplot.h"

#include <QFontMetrics>
#include <QPainter>

namespace Tsb {

namespace {

const QColor noFlagColor(238, 238, 236);
constexpr int mostModes = 120; ///< so that two styles for each, and two more, fit into a byte

} // namespace

QColor paleTint(const QColor &color)
{
    const auto pale = [](int channel) { return int(channel * 0.5 + 127); };
    return QColor(pale(color.red()), pale(color.green()), pale(color.blue()));
}

OpmodePlot::OpmodePlot(QWidget *parent) : Plot(parent)
{
    rebuildStyles();
}

QSize OpmodePlot::sizeHint() const
{
    const QMargins margins = contentsMargins();
    return QSize(-1, QFontMetrics(font()).height() + 4 + margins.top() + margins.bottom());
}

void OpmodePlot::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    m_uiInfo = std::move(uiInfo);
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &OpmodePlot::reloadSetup);
    reloadSetup();
}

void OpmodePlot::reloadSetup()
{
    rebuildStyles();
    m_recordStylesStale = true;
    requestFullRedraw();
}

/// Styles 2 m and 2 m + 1 are mode m, final and provisional; then an unknown mode likewise; the last is "no flag".
void OpmodePlot::rebuildStyles()
{
    m_styles.clear();
    const auto add = [this](const QPen &pen, const QBrush &brush) {
        m_styles.push_back({pen, brush, false});
        m_styles.push_back({pen, QBrush(Qt::white), true});
    };
    m_knownModes = 0;
    if (m_uiInfo) {
        for (const QColor &color : m_uiInfo->opmodeColors()) {
            if (m_knownModes == mostModes)
                break;
            add(QPen(QBrush(color), 0, Qt::SolidLine, Qt::SquareCap), QBrush(paleTint(color)));
            ++m_knownModes;
        }
    }
    add(QPen(QBrush(Qt::black), 0, Qt::SolidLine, Qt::SquareCap), QBrush());
    m_styles.push_back({QPen(Qt::NoPen), QBrush(noFlagColor), false});
}

std::uint8_t OpmodePlot::styleOf(const Record &record) const
{
    const bool known = record.opmode >= 0 && record.opmode < m_knownModes;
    const int ofMode = 2 * (known ? record.opmode : m_knownModes);
    if (m_mode == Opmode)
        return std::uint8_t(ofMode + (record.provisional ? 1 : 0));
    const bool raised = std::any_of(record.flags.begin(), record.flags.end(),
                                    [this](const auto &flag) { return flag->hash == m_flag.hash; });
    return std::uint8_t(raised ? ofMode : int(m_styles.size()) - 1);
}

void OpmodePlot::showOpmode()
{
    m_mode = Opmode;
    m_recordStylesStale = true;
    requestFullRedraw();
}

void OpmodePlot::showFlag(const Spectrometer::RecordFlag &flag)
{
    m_flag = flag;
    m_mode = Flag;
    m_recordStylesStale = true;
    requestFullRedraw();
}

// ---- the records' styles, kept beside the store

void OpmodePlot::setDatastore(Datastore *store)
{
    if (datastore())
        disconnect(datastore(), nullptr, this, nullptr);
    Plot::setDatastore(store);
    m_recordStylesStale = true;
    if (store) {
        connect(store, &Datastore::updated, this, &OpmodePlot::noteUpdated);
        connect(store, &Datastore::removed, this, &OpmodePlot::noteRemoved);
    }
}

void OpmodePlot::noteUpdated(int index, const std::shared_ptr<Record> &record, int)
{
    if (m_recordStylesStale)
        return;
    const std::size_t place = std::size_t(index);
    const std::size_t count = std::size_t(datastore()->size());
    if (count == m_recordStyles.size() + 1)
        m_recordStyles.insert(m_recordStyles.begin() + index, styleOf(*record));
    else if (count == m_recordStyles.size())
        m_recordStyles[place] = styleOf(*record);
    else
        m_recordStylesStale = true;
}

void OpmodePlot::noteRemoved()
{
    if (!m_recordStyles.empty())
        m_recordStyles.pop_front();
}

void OpmodePlot::bringStylesUpToDate()
{
    const auto &records = datastore()->records();
    if (!m_recordStylesStale && m_recordStyles.size() == records.size())
        return;
    m_recordStyles.clear();
    for (const auto &record : records)
        m_recordStyles.push_back(styleOf(*record));
    m_recordStylesStale = false;
}

void OpmodePlot::drawRange(QPainter &painter, int first, int last)
{
    clearRange(painter, first, last);
    if (!datastore())
        return;
    bringStylesUpToDate();
    BarStripSource source;
    source.spans = &datastore()->recordSpans();
    source.styles = &m_styles;
    source.styleOf = [this](std::size_t i) { return m_recordStyles[i]; };
    m_painter.draw(painter, *static_cast<QImage *>(painter.device()), source, timeScale(), first, last);
}

} // namespace Tsb
