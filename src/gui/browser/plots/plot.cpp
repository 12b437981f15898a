#include "gui/browser/plots/plot.h"

#include "axis/zoomfactor.h"
#include "columns/recordpicking.h"
#include "gui/browser/drawing/cursorline.h"
#include "gui/browser/drawing/recordmarker.h"
#include "gui/browser/plots/updatedelayer.h"
#include "gui/common/recordtext.h"
#include "log/logger.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

#include <cmath>

namespace Tsb {

namespace {

constexpr int frameStyleValue = QFrame::StyledPanel | QFrame::Sunken;
constexpr int relevantFlags = RecordCameIn | DataReplaced | otherChange;

} // namespace

Plot::Plot(QWidget *parent) : QFrame(parent)
{
    setFrameStyle(frameStyleValue);
    setFocusPolicy(Qt::StrongFocus);
    tellSelections();
}

Plot::~Plot() = default;

void Plot::setDatastore(Datastore *datastore)
{
    if (m_datastore)
        disconnect(m_datastore, nullptr, this, nullptr);
    m_datastore = datastore;
    if (m_datastore) {
        setListening(true);
        connect(m_datastore, &Datastore::removed, this, &Plot::removeRecord);
    }
    requestFullRedraw();
}

void Plot::setListening(bool on)
{
    if (m_datastore && on)
        connect(m_datastore, &Datastore::updated, this, &Plot::updateRecord, Qt::UniqueConnection);
    else if (m_datastore)
        disconnect(m_datastore, &Datastore::updated, this, &Plot::updateRecord);
}

void Plot::setUpdateTimer(QTimer *timer)
{
    if (m_updateDelayer && m_updateDelayer->hasDeferred())
        update();
    delete m_updateDelayer;
    m_updateDelayer = new UpdateDelayer(timer, this);
    connect(m_updateDelayer, &UpdateDelayer::triggerUpdate, this, qOverload<>(&QWidget::update));
}

void Plot::requestFullRedraw()
{
    m_image.requestFullRedraw();
    update();
}

void Plot::requestRedraw(const PixelRange &columns)
{
    if (m_image.touch(columns))
        update();
}

// ---- what changes the picture

void Plot::setTimeScale(TimeScale timescale)
{
    if (timescale == timeScale())
        return;
    m_image.setTimeScale(timescale);
    update();
}

void Plot::setCurrentRecord(std::shared_ptr<Record> record)
{
    if (record == m_currentRecord)
        return;
    m_currentRecord = std::move(record);
    update();
    noteSelectionChanged(this);
}

QString Plot::selectionText() const
{
    if (!m_currentRecord)
        return tr("No record is selected");
    return tr("%1: %2").arg(RecordText::moment(*m_currentRecord), valuesText(*m_currentRecord));
}

QString Plot::valuesText(const Record &) const
{
    return {};
}

PixelRange Plot::spanOf(const Record &record, int margin) const
{
    return {timeScale().pixelAt(record.beginTime) - margin, timeScale().pixelAt(effectiveEnd(record)) + margin + 1};
}

PixelRange Plot::rangeOfUpdatedRecord(int, const std::shared_ptr<Record> &record, int flags)
{
    return (flags & relevantFlags) == 0 ? PixelRange() : spanOf(*record, m_redrawMargin);
}

PixelRange Plot::rangeOfRemovedRecord(int, const std::shared_ptr<Record> &record)
{
    return spanOf(*record, m_redrawMargin);
}

void Plot::noteUpdated(int, const std::shared_ptr<Record> &, int) {}

void Plot::updateRecord(int index, const std::shared_ptr<Record> &record, int flags)
{
    noteUpdated(index, record, flags);
    if (!m_image.touch(rangeOfUpdatedRecord(index, record, flags)))
        return;
    if ((flags & RecordCameIn) != 0 || !m_updateDelayer || m_updateDelayer->requestUpdate())
        update();
}

void Plot::removeRecord(int index, std::shared_ptr<Record> record)
{
    requestRedraw(rangeOfRemovedRecord(index, record));
}

void Plot::setTimeCursor(bool visible, int pixel)
{
    if (visible == m_timeCursorVisible && (!visible || pixel == m_timeCursorPixel))
        return;
    const auto repaintColumn = [this](bool shown, int x) {
        if (shown)
            update(QRect(x - 1, 0, 3, height()));
    };
    repaintColumn(m_timeCursorVisible, m_timeCursorPixel);
    m_timeCursorVisible = visible;
    m_timeCursorPixel = pixel;
    repaintColumn(visible, pixel);
    Q_EMIT timeCursorChanged(visible, pixel);
}

void Plot::setValueCursor(bool visible, int pixel)
{
    if (visible == m_valueCursorVisible && (!visible || pixel == m_valueCursorPixel))
        return;
    const auto repaintRow = [this](bool shown, int y) {
        if (shown)
            update(QRect(0, y - 1, width(), 3));
    };
    repaintRow(m_valueCursorVisible, m_valueCursorPixel);
    m_valueCursorVisible = visible;
    m_valueCursorPixel = pixel;
    repaintRow(visible, pixel);
    Q_EMIT valueCursorChanged(visible, pixel);
}

// ---- measuring

void Plot::setMeasuringCursors(const MeasuringCursors *cursors)
{
    if (m_measuringCursors)
        m_measuringCursors->disconnect(this);
    m_measuringCursors = cursors;
    if (cursors)
        connect(cursors, &MeasuringCursors::changed, this, &Plot::moveMeasuringCursors);
    moveMeasuringCursors();
}

QVector<CurveFigures> Plot::measure(const MeasuringCursors::Times &)
{
    return {};
}

/// They are drawn over the image: only their columns are painted anew.
void Plot::moveMeasuringCursors()
{
    const MeasuringCursors::Times times = m_measuringCursors ? m_measuringCursors->times() : MeasuringCursors::Times();
    const QRect contents = contentsRect();
    const auto repaintColumn = [&](const std::optional<RecordTime> &time) {
        if (!time)
            return;
        const int x = contents.left() + timeScale().pixelAt(*time);
        update(QRect(x - cursorLineMargin, 0, 2 * cursorLineMargin + 1, height()));
    };
    for (std::size_t which = 0; which < times.size(); ++which) {
        if (times[which] == m_drawnCursors[which])
            continue;
        repaintColumn(m_drawnCursors[which]);
        repaintColumn(times[which]);
    }
    m_drawnCursors = times;
}

void Plot::drawMeasuringCursors(QPainter &painter)
{
    const QRect contents = contentsRect();
    for (int which = 0; which < MeasuringCursors::count; ++which) {
        const std::optional<RecordTime> &time = m_drawnCursors[std::size_t(which)];
        const int column = time ? timeScale().pixelAt(*time) : -1;
        if (column >= 0 && column < contents.width())
            drawCursorLine(painter, contents, contents.left() + column, which);
    }
}

// ---- drawing

void Plot::drawRange(QPainter &, int, int) {}

void Plot::drawAll(QPainter &painter)
{
    drawRange(painter, 0, image().width());
}

void Plot::clearRange(QPainter &painter, int first, int last)
{
    painter.fillRect(first, 0, last - first, contentsRect().height(), Qt::white);
}

void Plot::drawUnderlay(QPainter &) {}

void Plot::drawOverlay(QPainter &painter)
{
    if (!m_currentRecord)
        return;
    drawRecordMarker(painter, contentsRect(), timeScale().positionOf(m_currentRecord->beginTime),
                     timeScale().positionOf(effectiveEnd(*m_currentRecord)), palette().color(QPalette::Highlight));
}

void Plot::updateImage()
{
    if (!m_datastore)
        return;
    const std::vector<PixelRange> runs = m_image.staleColumns(contentsRect().size());
    if (runs.empty())
        return;
    QPainter painter(&m_image.canvas());
    for (const PixelRange &run : runs) {
        if (run.width() == image().width()) {
            drawAll(painter);
            continue;
        }
        painter.save();
        painter.setClipRect(run.first, 0, run.width(), image().height());
        drawRange(painter, run.first, run.last);
        painter.restore();
    }
}

void Plot::checkImageSize()
{
    if (m_image.resize(contentsRect().size()))
        update();
}

void Plot::paintContents(QPainter &painter)
{
    if (!m_datastore)
        return;
    updateImage();
    painter.save();
    drawUnderlay(painter);
    painter.drawImage(contentsRect().topLeft(), image());
    painter.setClipRect(contentsRect());
    drawOverlay(painter);
    drawMeasuringCursors(painter);
    painter.restore();
}

void Plot::paintEvent(QPaintEvent *event)
{
    // The image comes up to date as a whole, but a paint of the cursor's column alone leaves the rest of the screen
    // waiting.
    if (m_updateDelayer && (visibleRegion() & contentsRect()).subtracted(event->region()).isEmpty())
        m_updateDelayer->clearDeferred();
    QFrame::paintEvent(event);
    QPainter painter(this);
    paintContents(painter);
    if (m_focusMarked && hasFocus()) {
        painter.setClipping(false);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

/// Who goes by keys must see where keys go; who clicked has seen it.
void Plot::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_focusMarked = true;
        break;
    case Qt::MouseFocusReason:
    case Qt::OtherFocusReason:
        m_focusMarked = false;
        break;
    default: // back from a menu or another window
        break;
    }
    QFrame::focusInEvent(event);
}

bool Plot::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::LayoutRequest:
        checkImageSize();
        break;
    case QEvent::Hide:
        endPan(); // neither a release nor the pointer's leaving comes to a hidden widget
        hideCursors();
        break;
    case QEvent::ContextMenu:
        hideCursors(); // the pointer may go elsewhere over the menu, and its leaving isn't told after that
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

// ---- choosing records

std::shared_ptr<Record> Plot::findRecord(RecordTime tick, int direction)
{
    return m_datastore ? Tsb::findRecord(*m_datastore, tick, direction) : nullptr;
}

void Plot::chooseRecordAt(int x, bool sameOpmode)
{
    const RecordTime tick = timeScale().tickAt(x);
    std::shared_ptr<Record> found = findRecord(tick, 0);
    if (!found)
        return;
    if (sameOpmode && m_currentRecord && m_currentRecord->opmode != found->opmode)
        found = nearestOfOpmode(*m_datastore, found, tick, m_currentRecord->opmode);
    if (found)
        Q_EMIT recordChosen(found);
}

void Plot::chooseRecordRelative(int step, bool sameOpmode)
{
    if (!m_currentRecord || !m_datastore)
        return;
    const auto record = sameOpmode ? m_datastore->neighbourWithOpmode(m_currentRecord, step, m_currentRecord->opmode)
                                   : m_datastore->neighbour(m_currentRecord, step);
    if (record && record != m_currentRecord)
        Q_EMIT recordChosen(record);
}

void Plot::chooseRecordBeyondTicks(std::int64_t ticks, bool sameOpmode)
{
    if (!m_currentRecord || !m_datastore || m_datastore->isEmpty())
        return;
    // The mode is told to the log and used no further.
    Log::Logger(QStringLiteral("src/gui/common/tsb/plot"))
        .log(Log::Debug,
             QStringLiteral("choose beyond %1 %2")
                 .arg(QString::number(ticks), sameOpmode ? QStringLiteral("true") : QStringLiteral("false")));
    const RecordTime from = ticks >= 0 ? effectiveEnd(*m_currentRecord) : m_currentRecord->beginTime;
    auto found = findRecord(recordTimeFromTicks(saturatedAdd(ticksOf(from), ticks)), ticks < 0 ? -1 : 1);
    if (!found)
        found = m_datastore->at(ticks < 1 ? 0 : m_datastore->size() - 1);
    Q_EMIT recordChosen(found);
}

// ---- mouse and keys

void Plot::mousePressEvent(QMouseEvent *event)
{
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->button() == Qt::LeftButton && !control) {
        chooseRecordAt(event->x() - contentsRect().left(), event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton) {
        Q_EMIT requestDisableAutoscroll(true);
        m_panning = true;
        m_pressPoint = QPoint(event->x(), height() / 2);
        m_dragStartScale = timeScale().rebased(event->x() - contentsRect().left());
    } else {
        QFrame::mousePressEvent(event);
    }
}

void Plot::mouseMoveEvent(QMouseEvent *event)
{
    if (m_panning && !(event->buttons() & (Qt::LeftButton | Qt::MiddleButton)))
        endPan(); // the release went elsewhere, as where a dialog came up
    if (m_panning)
        Q_EMIT requestPan(m_dragStartScale, QPoint(event->x() - m_pressPoint.x(), 0));
    else if (event->buttons() == Qt::LeftButton)
        // A drag asks Control, where the press asks Shift.
        chooseRecordAt(event->x() - contentsRect().left(), event->modifiers().testFlag(Qt::ControlModifier));
    else
        QFrame::mouseMoveEvent(event);
    setTimeCursor(true, event->x());
    setValueCursor(true, event->y());
}

void Plot::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_panning)
        return QFrame::mouseReleaseEvent(event);
    endPan();
}

void Plot::endPan()
{
    if (!m_panning)
        return;
    m_panning = false;
    Q_EMIT requestDisableAutoscroll(false);
}

void Plot::hideCursors()
{
    setTimeCursor(false, 0);
    setValueCursor(false, 0);
}

void Plot::leaveEvent(QEvent *)
{
    hideCursors();
}

void Plot::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const int delta = event->angleDelta().y();
    if (delta != 0)
        Q_EMIT requestZoom(zoomOfWheel(delta), qRound(event->position().x()) - contentsRect().left());
}

void Plot::keyPressEvent(QKeyEvent *event)
{
    const bool sameOpmode = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->modifiers().testFlag(Qt::AltModifier))
        return QFrame::keyPressEvent(event); // for the window's commands
    switch (event->key()) {
    case Qt::Key_Escape:
        if (m_datastore)
            Q_EMIT recordChosen(nullptr);
        break;
    case Qt::Key_Left:
    case Qt::Key_Up:
        return chooseRecordRelative(-1, sameOpmode);
    case Qt::Key_Right:
    case Qt::Key_Down:
        return chooseRecordRelative(1, sameOpmode);
    case Qt::Key_PageUp:
        return chooseRecordBeyondTicks(-10 * timeScale().ticksPerPixel, sameOpmode);
    case Qt::Key_PageDown:
        return chooseRecordBeyondTicks(10 * timeScale().ticksPerPixel, sameOpmode);
    default:
        QFrame::keyPressEvent(event);
    }
}

} // namespace Tsb
