#include "gui/browser/controls/timeview.h"

#include "axis/timeticks.h"
#include "gui/browser/controls/cursorwrap.h"
#include "util/timeformat.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tsb {

namespace {

constexpr int rollInterval = 20; // ms
constexpr int settleTime = 400;  // ms after the last step of a zoom
constexpr int landingTime = 700; // ms after the last jump: a held key takes that long to repeat for the first time

TimeView::Surroundings realSurroundings()
{
    TimeView::Surroundings real;
    real.now = [] { return currentRecordTime(); };
    real.screenAt = [](QPoint position) { return screenAt(position); };
    return real;
}

TimeTextWidths textWidths(const QFontMetrics &metrics)
{
    TimeTextWidths widths;
    widths.month = metrics.horizontalAdvance(QStringLiteral("0000-00"));
    for (int day = 1; day <= 31; ++day)
        widths.day =
            std::max(widths.day, metrics.horizontalAdvance(QStringLiteral("%1").arg(day, 2, 10, QLatin1Char('0'))));
    return widths;
}

/// The zoom of a drag by y pixels; no movement keeps the value to the tick.
std::int64_t draggedTicks(std::int64_t ticksPerPixel, int dy)
{
    if (dy == 0)
        return ticksPerPixel;
    const double ticks = double(ticksPerPixel) / 1e7 * std::pow(0.99, dy) * 1e7;
    return std::int64_t(std::clamp(ticks, 0.0, double(TimeScale::greatestTicksPerPixel)));
}

} // namespace

std::int64_t zoomedTicks(std::int64_t ticksPerPixel, double factor)
{
    if (!(factor > 0))
        return ticksPerPixel;
    return std::int64_t(std::min(double(ticksPerPixel) * factor, double(TimeScale::greatestTicksPerPixel)));
}

int followInterval(std::int64_t ticksPerPixel)
{
    return int(std::clamp<std::int64_t>(ticksPerPixel / ticksPerMillisecond, 100, 1000));
}

TimeView::TimeView(QWidget *parent) : QFrame(parent), m_surroundings(realSurroundings())
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::OpenHandCursor);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setTimeOffset(0);
    updateFontMetrics();
    m_timeScale = TimeScale(m_surroundings.now(), ticksPerSecond, 0);
    m_rollTimer.setInterval(rollInterval);
    connect(&m_followTimer, &QTimer::timeout, this, &TimeView::updateFollowNow);
    m_settleTimer.setSingleShot(true);
    connect(&m_settleTimer, &QTimer::timeout, this, &TimeView::finishGesture);
    connect(&m_rollTimer, &QTimer::timeout, this, &TimeView::panTick);
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

// ---- the scale

void TimeView::setTimeScale(TimeScale newtimescale)
{
    newtimescale.ticksPerPixel =
        std::clamp(newtimescale.ticksPerPixel, TimeScale::leastTicksPerPixel, TimeScale::greatestTicksPerPixel);
    if (newtimescale == m_timeScale || !newtimescale.isRepresentable(contentsWidth()))
        return;
    const bool zoomed = newtimescale.ticksPerPixel != m_timeScale.ticksPerPixel;
    m_timeScale = newtimescale;
    if (m_followNow && zoomed)
        updateFollowInterval();
    Q_EMIT timeScaleChanged(m_timeScale);
    update();
}

void TimeView::scrollIntoView(RecordTime beginTime, RecordTime endTime)
{
    if (m_dragState != Idle || isMissing(beginTime) || isMissing(endTime))
        return;
    // Though it may be in sight: a key held down moves a dense axis only now and then.
    beginStep(Jumps);
    moveIntoView(beginTime, endTime);
    tellHistory();
}

void TimeView::runIntoView(RecordTime beginTime, RecordTime endTime)
{
    if (m_dragState != Idle || isMissing(beginTime) || isMissing(endTime))
        return;
    if (m_settleTimer.isActive() && m_steps == Jumps)
        finishGesture(); // where the axis runs from there is not the jump's doing
    moveIntoView(beginTime, endTime);
}

void TimeView::moveIntoView(RecordTime beginTime, RecordTime endTime)
{
    const int width = contentsWidth(), half = width / 2;
    const std::int64_t right = std::max(width - 10, half), left = std::min(half, 10);
    const std::int64_t x0 = m_timeScale.columnOf(beginTime), x1 = m_timeScale.columnOf(endTime);
    std::int64_t shift = 0;
    if (right - left < saturatedSubtract(x1, x0))
        shift = saturatedAdd(x0, x1) / 2 - (right + left) / 2;
    else if (x1 > right)
        shift = x1 - right;
    else if (x0 < left)
        shift = saturatedSubtract(x0, left);
    if (shift == 0)
        return;
    setFollowNow(false);
    setTimeScale(
        {m_timeScale.originTick, m_timeScale.ticksPerPixel, saturatedSubtract(m_timeScale.originPixel, shift)});
}

void TimeView::fitIntoView(RecordTime beginTime, RecordTime endTime)
{
    beginGesture();
    refitIntoView(beginTime, endTime);
    finishGesture();
}

void TimeView::refitIntoView(RecordTime beginTime, RecordTime endTime)
{
    if (isMissing(beginTime) || isMissing(endTime))
        return;
    setFollowNow(false);
    const int width = contentsWidth();
    const std::int64_t span = saturatedSubtract(ticksOf(endTime), ticksOf(beginTime));
    setTimeScale({beginTime, span / std::max(width - 20, 20), std::min(width / 2, 10)});
}

void TimeView::changeZoom(double multiplier, int midPixel)
{
    std::int64_t ticks = zoomedTicks(m_timeScale.ticksPerPixel, multiplier);
    if (multiplier > 1 && ticks == m_timeScale.ticksPerPixel)
        ++ticks; // else truncation would hold the finest scales for ever
    beginStep(ZoomSteps);
    if (m_followNow) {
        updateFollowNowAt(ticks);
    } else {
        TimeScale scale = m_timeScale.rebased(midPixel);
        scale.ticksPerPixel = ticks;
        setTimeScale(scale);
    }
    tellHistory();
}

void TimeView::changeZoom(TimeScale startTimescale, QPoint delta)
{
    if (m_settleTimer.isActive())
        finishGesture(); // steps came before the drag
    m_history.begin(place());
    if (m_followNow) {
        const std::int64_t span = saturatedSubtract(m_timeScale.originPixel, startTimescale.originPixel);
        const std::int64_t left = saturatedSubtract(span, delta.x());
        if (left > 0)
            updateFollowNowAt(saturatedMultiply(startTimescale.ticksPerPixel, span) / left);
    } else {
        setTimeScale({startTimescale.originTick, draggedTicks(startTimescale.ticksPerPixel, delta.y()),
                      saturatedAdd(startTimescale.originPixel, delta.x())});
    }
    update();
}

// ---- the way back

void TimeView::beginGesture()
{
    finishGesture();
    m_history.begin(place());
}

/// Goes on with the gesture of the last step, if that was of the same kind and not long ago.
void TimeView::beginStep(Steps steps)
{
    const bool goesOn = m_settleTimer.isActive() && m_steps == steps;
    if (!goesOn && m_dragState == Idle)
        beginGesture();
    m_steps = steps;
    m_settleTimer.start(steps == Jumps ? landingTime : settleTime);
}

void TimeView::finishGesture()
{
    m_settleTimer.stop();
    m_history.finish(place());
    tellHistory();
}

void TimeView::finishDrag()
{
    if (m_history.isOpen() && !m_settleTimer.isActive())
        finishGesture();
}

void TimeView::tellHistory()
{
    const bool has = hasPreviousView();
    if (std::exchange(m_toldHasPrevious, has) != has)
        Q_EMIT hasPreviousViewChanged(has);
}

void TimeView::forgetViews()
{
    m_settleTimer.stop();
    m_history.clear();
    tellHistory();
}

void TimeView::goToTime(RecordTime time)
{
    if (isMissing(time))
        return;
    beginGesture();
    setFollowNow(false);
    setTimeScale({time, m_timeScale.ticksPerPixel, contentsWidth() / 2});
    finishGesture();
}

void TimeView::goToPreviousView()
{
    const bool dragging = m_history.isOpen() && !m_settleTimer.isActive();
    if (dragging)
        return;
    m_settleTimer.stop();
    const auto previous = m_history.goBack(place());
    if (previous && previous->following && m_followNow) {
        updateFollowNowAt(previous->scale.ticksPerPixel);
    } else if (previous) {
        setFollowNow(false);
        setTimeScale(previous->scale);
    }
    tellHistory();
}

// ---- following the present

void TimeView::setFollowNow(bool on)
{
    if (on == m_followNow)
        return;
    // Starting is a gesture, which leaves a place that one may want back; running with the clock is none.
    if (on)
        beginGesture();
    m_followNow = on;
    if (on) {
        updateFollowInterval();
        m_followTimer.start();
        updateFollowNow();
        finishGesture();
    } else {
        m_followTimer.stop();
    }
    Q_EMIT followNowChanged(on);
}

void TimeView::updateFollowInterval()
{
    m_followTimer.setInterval(followInterval(m_timeScale.ticksPerPixel));
}

void TimeView::updateFollowNow()
{
    updateFollowNowAt(0);
}

void TimeView::updateFollowNowAt(std::int64_t ticksPerPixel)
{
    const std::int64_t old = ticksOf(m_timeScale.originTick), ticks = m_timeScale.ticksPerPixel;
    const std::int64_t elapsed = saturatedSubtract(ticksOf(m_surroundings.now()), old);
    // The origin moves in whole pixels of the old scale, so that plots go on moving their images.
    const RecordTime origin = recordTimeFromTicks(saturatedAdd(old, elapsed - elapsed % ticks));
    const int width = contentsWidth();
    setTimeScale({origin, ticksPerPixel >= 1 ? ticksPerPixel : ticks, std::max(width / 2, width - 10)});
}

void TimeView::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    if (m_followNow)
        updateFollowNow();
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

// ---- gestures

void TimeView::mousePressEvent(QMouseEvent *event)
{
    if (m_dragState != Idle || (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton))
        return QFrame::mousePressEvent(event);
    beginGesture();
    m_drag.begin(QPoint(event->x(), height() / 2));
    m_dragStartScale = m_timeScale.rebased(event->x() - contentsRect().left());
    if (event->button() == Qt::LeftButton) {
        m_dragState = Panning;
        setCursor(Qt::ClosedHandCursor);
    } else {
        m_dragState = Rolling;
        m_rollSpeed = m_rollPosition = 0;
        m_rollTimer.start();
        setCursor(Qt::SizeHorCursor);
    }
}

void TimeView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool ends = (m_dragState == Panning && event->button() == Qt::LeftButton) ||
                      (m_dragState == Rolling && event->button() == Qt::MiddleButton);
    if (!ends)
        return QFrame::mouseReleaseEvent(event);
    endDrag();
}

void TimeView::endDrag()
{
    if (m_dragState == Idle)
        return;
    m_rollTimer.stop();
    m_dragState = Idle;
    setCursor(Qt::OpenHandCursor);
    finishDrag();
}

void TimeView::mouseDoubleClickEvent(QMouseEvent *)
{
    Q_EMIT doubleClicked();
}

void TimeView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragState == Panning)
        return pan(event);
    const double distance = event->x() - m_drag.pressPoint().x();
    m_rollSpeed = std::copysign(distance * distance, distance);
}

void TimeView::pan(QMouseEvent *event)
{
    const QPoint global = event->globalPos();
    if (const auto travel = m_drag.moveTo(event->pos(), global, m_surroundings.screenAt(global)))
        panAndZoom(*travel);
}

void TimeView::panAndZoom(QPoint delta)
{
    if (m_followNow)
        return changeZoom(m_dragStartScale, delta);
    // Around the middle a band as high as the widget doesn't zoom.
    const int dead = height() / 2;
    const int dy = delta.y() < 0 ? std::min(0, dead + delta.y()) : std::max(0, delta.y() - dead);
    changeZoom(m_dragStartScale, QPoint(delta.x(), dy));
}

void TimeView::panTick()
{
    const double before = std::trunc(m_rollPosition);
    m_rollPosition += rollInterval * m_rollSpeed * -0.0001;
    if (std::trunc(m_rollPosition) == before)
        return;
    const auto rolled = std::int64_t(std::trunc(double(m_dragStartScale.originPixel) + m_rollPosition));
    setTimeScale({m_dragStartScale.originTick, m_dragStartScale.ticksPerPixel, rolled});
}

void TimeView::wheelEvent(QWheelEvent *event)
{
    if (m_dragState != Idle)
        return QFrame::wheelEvent(event);
    event->accept();
    const double delta = event->angleDelta().y();
    if (delta != 0)
        changeZoom(std::pow(0.9, delta * 0.125 / 15.0), qRound(event->position().x()) - contentsRect().left());
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
    paintAxis(painter, contentsRect().size());
    paintCursor(painter, contentsRect().size());
}

void TimeView::paintAxis(QPainter &painter, const QSize &size) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    const TimeAxis axis = timeAxis(m_timeScale, size.width(), m_offsetSeconds, textWidths(metrics));
    const int bottom = size.height();
    const QPen pen(palette().color(QPalette::WindowText));
    painter.setPen(pen);
    for (const TimeTick &tick : axis.ticks) {
        if (tick.drawn)
            painter.drawLine(tick.x, bottom - 2, tick.x, bottom);
        const int width = metrics.horizontalAdvance(tick.label);
        if (tick.label.isEmpty() || tick.x - width / 2 > size.width())
            continue;
        painter.drawText(QRect(tick.x - width / 2, m_lineHeight, width, m_lineHeight),
                         Qt::AlignHCenter | Qt::TextDontClip, tick.label);
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

void TimeView::paintCursor(QPainter &painter, const QSize &size) const
{
    if (!m_cursorVisible)
        return;
    const int x = m_cursorPixel - contentsRect().left();
    const TimeCursorLabels labels = timeCursorLabels(m_timeScale, x, m_offsetSeconds);
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
