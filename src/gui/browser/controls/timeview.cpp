#include "gui/browser/controls/timeview.h"

#include "axis/timeticks.h"
#include "axis/zoomfactor.h"
#include "gui/browser/controls/cursorhandle.h"
#include "util/timeformat.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace Tsb {

namespace {

constexpr int leastSpan = 4; ///< columns; less is a click

TimeTextWidths textWidths(const QFontMetrics &metrics)
{
    TimeTextWidths widths;
    widths.month = metrics.horizontalAdvance(QStringLiteral("0000-00"));
    for (int day = 1; day <= 31; ++day)
        widths.day =
            std::max(widths.day, metrics.horizontalAdvance(QStringLiteral("%1").arg(day, 2, 10, QLatin1Char('0'))));
    return widths;
}

} // namespace

TimeView::Surroundings TimeView::realSurroundings()
{
    return {[] { return currentRecordTime(); }, [](QPoint position) { return screenAt(position); }};
}

TimeView::TimeView(QWidget *parent, const Surroundings &surroundings)
    : QFrame(parent), m_screenAt(surroundings.screenAt),
      m_navigator(surroundings.now, [this] { return contentsRect().width(); })
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::OpenHandCursor);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setMouseTracking(true);
    setStatusTip(tr("Drag to pan and zoom, with Shift to mark a time span. The keys 1 and 2 set measuring cursors."));
    setAccessibleName(tr("Time axis"));
    setTimeOffset(0);
    updateFontMetrics();
    connect(&m_navigator, &TimeNavigator::timeScaleChanged, this, &TimeView::timeScaleChanged);
    connect(&m_navigator, &TimeNavigator::timeScaleChanged, this, qOverload<>(&QWidget::update));
    connect(&m_navigator, &TimeNavigator::followNowChanged, this, &TimeView::followNowChanged);
}

void TimeView::updateFontMetrics()
{
    m_lineHeight = fontMetrics().height();
    m_preferredHeight = 2 * m_lineHeight + 6;
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(0.9);
    m_cursorBrush = background;
    updateGeometry();
}

void TimeView::setTimeOffset(std::int64_t seconds)
{
    m_offsetSeconds = seconds;
    setToolTip(tr("Time zone: UTC%1").arg(utcOffsetToString(seconds)));
    update();
}

void TimeView::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    m_navigator.adaptToWidth();
}

void TimeView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange)
        updateFontMetrics();
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endDrag();
    QFrame::changeEvent(event);
}

void TimeView::hideEvent(QHideEvent *event)
{
    endDrag(); // no release comes to a hidden widget, nor to a disabled one
    QFrame::hideEvent(event);
}

// ---- mouse

int TimeView::columnOf(double widgetX) const
{
    return qRound(widgetX) - contentsRect().left();
}

void TimeView::mousePressEvent(QMouseEvent *event)
{
    if (!m_navigator.isDragging() && beginMeasuring(event))
        return;
    const bool pans = event->button() == Qt::LeftButton;
    if (m_navigator.isDragging() || (!pans && event->button() != Qt::MiddleButton))
        return QFrame::mousePressEvent(event);
    m_dragButton = event->button();
    m_drag.begin(QPoint(event->x(), height() / 2));
    if (pans)
        m_navigator.beginPan(columnOf(event->x()));
    else
        m_navigator.beginRoll(columnOf(event->x()));
    setCursor(pans ? Qt::ClosedHandCursor : Qt::SizeHorCursor);
}

void TimeView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_isMarking)
        endSpan(event->globalPos());
    else if (event->button() == m_dragButton)
        endDrag();
    else
        QFrame::mouseReleaseEvent(event);
}

void TimeView::endDrag()
{
    m_dragButton = Qt::NoButton;
    if (m_isMarking)
        dropSpan();
    m_heldCursor = -1;
    setCursor(Qt::OpenHandCursor);
    update();
    if (!m_navigator.isDragging())
        return;
    m_navigator.endDrag();
}

void TimeView::mouseDoubleClickEvent(QMouseEvent *)
{
    Q_EMIT doubleClicked();
}

void TimeView::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() == Qt::NoButton && (m_isMarking || m_heldCursor >= 0 || m_navigator.isDragging()))
        endDrag(); // the release went elsewhere, as where a dialog came up
    if (m_isMarking || m_heldCursor >= 0)
        return measureAt(event->x());
    if (!m_navigator.isDragging())
        return setCursor(handleAt(event->pos()) >= 0 ? Qt::SizeHorCursor : Qt::OpenHandCursor);
    if (m_dragButton == Qt::MiddleButton)
        return m_navigator.roll(event->x() - m_drag.pressPoint().x());
    const QPoint global = event->globalPos();
    // Around the middle a band as high as the widget doesn't zoom.
    if (const auto travel = m_drag.moveTo(event->pos(), global, m_screenAt(global)))
        m_navigator.pan(*travel, height() / 2);
}

void TimeView::wheelEvent(QWheelEvent *event)
{
    if (m_navigator.isDragging())
        return QFrame::wheelEvent(event);
    event->accept();
    const int delta = event->angleDelta().y();
    if (delta != 0)
        changeZoom(zoomOfWheel(delta), columnOf(event->position().x()));
}

// ---- measuring

void TimeView::setMeasuringCursors(MeasuringCursors *cursors)
{
    if (m_measuringCursors)
        m_measuringCursors->disconnect(this);
    m_measuringCursors = cursors;
    if (cursors)
        connect(cursors, &MeasuringCursors::changed, this, qOverload<>(&QWidget::update));
    update();
}

int TimeView::handleAt(const QPoint &position) const
{
    if (!m_measuringCursors)
        return -1;
    const CursorHandles handles{m_measuringCursors->times(), timeScale(), contentsRect().size(), m_lineHeight};
    return handles.at(position - contentsRect().topLeft());
}

RecordTime TimeView::timeInSightAt(int column) const
{
    return timeScale().tickAt(std::clamp(column, 0, std::max(0, contentsRect().width() - 1)));
}

/// The press may take hold of a handle or begin a span.
bool TimeView::beginMeasuring(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return false;
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_isMarking = true;
        const RecordTime time = timeInSightAt(columnOf(event->x()));
        m_span = {time, time};
        setCursor(Qt::SizeHorCursor);
    } else {
        m_heldCursor = handleAt(event->pos());
        if (m_heldCursor < 0)
            return false;
        m_holdOffset =
            timeScale().pixelAt(*m_measuringCursors->times()[std::size_t(m_heldCursor)]) - columnOf(event->x());
    }
    m_dragButton = Qt::LeftButton;
    update();
    return true;
}

void TimeView::measureAt(int widgetX)
{
    const int column = columnOf(widgetX);
    if (m_isMarking) {
        m_span->second = timeInSightAt(column);
        Q_EMIT timeCursorChange(true, contentsRect().left() + timeScale().pixelAt(m_span->second));
        update();
    } else if (m_measuringCursors && m_measuringCursors->times()[std::size_t(m_heldCursor)]) {
        m_measuringCursors->set(m_heldCursor, timeInSightAt(column + m_holdOffset));
    } else {
        endDrag(); // it was dropped meanwhile
    }
}

void TimeView::endSpan(const QPoint &globalPosition)
{
    const auto span = std::minmax(m_span->first, m_span->second);
    const bool isClick = timeScale().pixelAt(span.second) - timeScale().pixelAt(span.first) < leastSpan;
    const std::pair<RecordTime, RecordTime> marked = span;
    endDrag();
    if (isClick)
        return;
    m_span = marked;
    Q_EMIT spanMarked(marked.first, marked.second, globalPosition);
}

void TimeView::dropSpan()
{
    m_isMarking = false;
    Q_EMIT timeCursorChange(false, 0);
    clearMarkedSpan();
}

void TimeView::clearMarkedSpan()
{
    m_span.reset();
    update();
}

// ---- painting

void TimeView::setTimeCursor(bool visible, int value)
{
    if (visible == m_cursorVisible && (!visible || value == m_cursorPixel))
        return;
    m_cursorVisible = visible;
    m_cursorPixel = value;
    update();
}

void TimeView::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setClipRect(contentsRect());
    painter.translate(contentsRect().topLeft());
    const QSize size = contentsRect().size();
    paintMarkedSpan(painter, size);
    paintAxis(painter, size);
    if (m_measuringCursors)
        CursorHandles{m_measuringCursors->times(), timeScale(), size, m_lineHeight}.draw(painter, palette());
    if (m_cursorVisible)
        paintTimeAt(painter, size, m_cursorPixel - contentsRect().left());
    if (m_heldCursor >= 0 && m_measuringCursors && m_measuringCursors->times()[std::size_t(m_heldCursor)])
        paintTimeAt(painter, size, timeScale().pixelAt(*m_measuringCursors->times()[std::size_t(m_heldCursor)]));
}

void TimeView::paintAxis(QPainter &painter, const QSize &size) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    const TimeAxis axis = timeAxis(timeScale(), size.width(), m_offsetSeconds, textWidths(metrics));
    const int bottom = size.height();
    const QPen pen(palette().color(QPalette::WindowText));
    painter.setPen(pen);
    int freeFrom = -size.width(); // large fonts leave out labels that would touch the one before
    for (const TimeTick &tick : axis.ticks) {
        if (tick.drawn)
            painter.drawLine(tick.x, bottom - 2, tick.x, bottom);
        const int width = metrics.horizontalAdvance(tick.label);
        const int left = tick.x - width / 2;
        if (tick.label.isEmpty() || left > size.width() || left < freeFrom)
            continue;
        freeFrom = left + width + metrics.horizontalAdvance(QLatin1Char(' '));
        painter.drawText(QRect(left, m_lineHeight, width, m_lineHeight), Qt::AlignHCenter | Qt::TextDontClip,
                         tick.label);
    }
    for (const TimeGroup &group : axis.groups) {
        const GroupPlacing placing = groupPlacing(group, size.width(), metrics.horizontalAdvance(group.text));
        if (placing == GroupPlacing::Omitted)
            continue;
        const int alignment = placing == GroupPlacing::Left    ? Qt::AlignLeft
                              : placing == GroupPlacing::Right ? Qt::AlignRight
                                                               : Qt::AlignHCenter;
        painter.drawText(QRect(group.left, 0, group.right - group.left, m_lineHeight), alignment | Qt::TextDontClip,
                         group.text);
    }
    painter.setPen(QPen(pen.color(), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    for (const int x : axis.boundaries)
        painter.drawLine(x, bottom - 2, x, bottom);
    painter.setPen(pen);
}

void TimeView::paintMarkedSpan(QPainter &painter, const QSize &size) const
{
    if (!m_span)
        return;
    const auto span = std::minmax(m_span->first, m_span->second);
    const int left = std::max(timeScale().pixelAt(span.first), -1);
    const int right = std::min(timeScale().pixelAt(span.second), size.width());
    QColor color = palette().color(QPalette::Highlight);
    painter.setPen(color);
    color.setAlphaF(0.4);
    painter.setBrush(color);
    painter.drawRect(left, 0, right - left, size.height() - 1);
}

/// The labels of a moment, as cursors have them.
void TimeView::paintTimeAt(QPainter &painter, const QSize &size, int x) const
{
    const TimeCursorLabels labels = timeCursorLabels(timeScale(), x, m_offsetSeconds);
    const QFontMetrics metrics = painter.fontMetrics();
    const auto labelRect = [&](const QString &label, int y) {
        const int width = metrics.horizontalAdvance(label);
        return QRect(x - width / 2, y, width, m_lineHeight);
    };
    const QRect lower = labelRect(labels.lower, m_lineHeight), upper = labelRect(labels.upper, 0);
    painter.fillRect((upper | lower).adjusted(-10, 0, 10, 0), m_cursorBrush);
    painter.drawLine(x, size.height() - 2, x, size.height());
    painter.drawText(lower, Qt::AlignHCenter | Qt::TextDontClip, labels.lower);
    painter.drawText(upper, Qt::AlignHCenter | Qt::TextDontClip, labels.upper);
}

} // namespace Tsb
