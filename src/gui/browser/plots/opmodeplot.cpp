#include "gui/browser/plots/opmodeplot.h"

#include "gui/browser/plots/notemarks.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace Tsb {

namespace {

const QColor noFlagColor(238, 238, 236);
const QColor cursorColor(0, 0, 0, 80);
constexpr int mostModes = 120; ///< so that two styles for each, and two more, fit into a byte

/// The style of final records of a mode; the next one is that of provisional ones.
std::uint8_t firstStyleOf(int opmode, int knownModes)
{
    return std::uint8_t(2 * (opmode >= 0 && opmode < knownModes ? opmode : knownModes));
}

} // namespace

QColor paleTint(const QColor &color)
{
    const auto pale = [](int channel) { return int(channel * 0.5 + 127); };
    return QColor(pale(color.red()), pale(color.green()), pale(color.blue()));
}

OpmodePlot::OpmodePlot(QWidget *parent) : Plot(parent)
{
    rebuildStyles();
    showOpmode();
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
    if (m_mode == Opmode)
        showOpmode();
    else
        showFlag(m_flag);
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

bool OpmodePlot::isRaised(const Record &record) const
{
    return std::any_of(record.flags.begin(), record.flags.end(),
                       [this](const auto &flag) { return flag->hash == m_flag.hash; });
}

QString OpmodePlot::valuesText(const Record &record) const
{
    if (m_mode == Flag)
        return isRaised(record) ? tr("flag is raised") : tr("flag isn't raised");
    const auto metadata = m_uiInfo ? m_uiInfo->metadata() : nullptr;
    const QString mode = metadata ? metadata->opmodeName(record.opmode) : QString();
    const QString text = mode.isEmpty() ? tr("unknown mode") : mode;
    return record.provisional ? tr("%1, provisional").arg(text) : text;
}

std::uint8_t OpmodePlot::flagStyleOf(const Record &record) const
{
    return isRaised(record) ? firstStyleOf(record.opmode, m_knownModes) : std::uint8_t(m_styles.size() - 1);
}

void OpmodePlot::showOpmode()
{
    m_mode = Opmode;
    m_recordStyles.setValueOfMarks([known = m_knownModes](const RecordMarks &record) {
        return std::uint8_t(firstStyleOf(record.opmode, known) + (record.provisional ? 1 : 0));
    });
    requestFullRedraw();
}

void OpmodePlot::showFlag(const Spectrometer::RecordFlag &flag)
{
    m_flag = flag;
    m_mode = Flag;
    m_recordStyles.setValueOf([this](const Record &record) { return flagStyleOf(record); });
    requestFullRedraw();
}

// ---- the records' styles, kept beside the store

void OpmodePlot::setDatastore(Datastore *store)
{
    if (datastore())
        disconnect(datastore(), nullptr, this, nullptr);
    Plot::setDatastore(store);
    m_recordStyles.invalidate();
}

void OpmodePlot::noteUpdated(int index, const std::shared_ptr<Record> &record, int flags)
{
    if (flags != SpectraChanged) // which no style shows
        m_recordStyles.noteUpdated(*datastore(), index, *record);
}

void OpmodePlot::drawRange(QPainter &painter, int first, int last)
{
    if (!datastore() || first >= last)
        return clearRange(painter, first, last);
    BarStripSource source;
    source.spans = &datastore()->recordSpans();
    source.styles = &m_styles;
    source.styleOf = m_recordStyles.values(*datastore());
    m_painter.draw(painter, contentsRect().height(), source, timeScale(), first, last);
    if (m_notes && m_mode == Opmode)
        NoteMarks::draw(painter, contentsRect().height(), *m_notes, timeScale(), first, last);
}

// ---- notes

void OpmodePlot::setNotes(const RecordNotes *notes)
{
    if (m_notes)
        disconnect(m_notes, nullptr, this, nullptr);
    m_notes = notes;
    if (m_notes)
        connect(m_notes, &RecordNotes::changed, this, &OpmodePlot::notesChanged);
    requestFullRedraw();
}

void OpmodePlot::notesChanged(RecordTime first, RecordTime last)
{
    if (m_mode == Opmode) // with the marks' edges
        requestRedraw({NoteMarks::columnOf(first, timeScale()) - 1,
                       NoteMarks::columnOf(last, timeScale()) + NoteMarks::markWidth + 1});
}

/// The note at a column, else the mode of the record there, which the colour alone tells few.
QString OpmodePlot::textAt(int column)
{
    if (m_notes)
        if (const auto note = NoteMarks::noteAt(*m_notes, timeScale(), column))
            return note->text;
    const auto record = findRecord(timeScale().tickAt(column), 0);
    return record && spanOf(*record, 0).intersects({column, column + 1}) ? valuesText(*record) : QString();
}

bool OpmodePlot::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && m_mode == Opmode) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const QString text = textAt(help->x() - contentsRect().left());
        if (!text.isEmpty()) {
            QToolTip::showText(help->globalPos(), RecordNotes::toolTip(text), this);
            return true;
        }
    }
    return Plot::event(event);
}

void OpmodePlot::drawOverlay(QPainter &painter)
{
    Plot::drawOverlay(painter);
    if (!isTimeCursorVisible())
        return;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(cursorColor);
    painter.drawLine(timeCursorPixel(), contentsRect().top(), timeCursorPixel(), contentsRect().bottom());
}

} // namespace Tsb
