#include "axis/timenavigator.h"

#include "axis/zoomfactor.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tsb {

namespace {

constexpr int rollInterval = 20; // ms
constexpr int settleTime = 400;  // ms after the last step of a zoom
constexpr int landingTime = 700; // ms after the last jump: a held key takes that long to repeat for the first time
constexpr int margin = 10;       // columns beside a record that is brought into sight

/// ticksPerPixel times the factor, truncated and held within 0 .. the greatest zoom; unchanged for a factor that is no
/// positive number.
std::int64_t zoomedTicks(std::int64_t ticksPerPixel, double factor)
{
    if (!(factor > 0))
        return ticksPerPixel;
    return std::int64_t(std::min(double(ticksPerPixel) * factor, double(TimeScale::greatestTicksPerPixel)));
}

/// The zoom of a drag by y pixels; no movement keeps the value to the tick.
std::int64_t draggedTicks(std::int64_t ticksPerPixel, int dy)
{
    if (dy == 0)
        return ticksPerPixel;
    const double ticks = double(ticksPerPixel) / 1e7 * zoomOfDrag(dy) * 1e7;
    return std::int64_t(std::clamp(ticks, 0.0, double(TimeScale::greatestTicksPerPixel)));
}

} // namespace

int followInterval(std::int64_t ticksPerPixel)
{
    return int(std::clamp<std::int64_t>(ticksPerPixel / ticksPerMillisecond, 100, 1000));
}

TimeNavigator::TimeNavigator(Clock clock, Width width, QObject *parent)
    : QObject(parent), m_clock(std::move(clock)), m_width(std::move(width)), m_timeScale(m_clock(), ticksPerSecond, 0)
{
    m_rollTimer.setInterval(rollInterval);
    m_settleTimer.setSingleShot(true);
    connect(&m_rollTimer, &QTimer::timeout, this, &TimeNavigator::panTick);
    connect(&m_followTimer, &QTimer::timeout, this, &TimeNavigator::updateFollowNow);
    connect(&m_settleTimer, &QTimer::timeout, this, &TimeNavigator::finishGesture);
}

// ---- the scale

void TimeNavigator::setTimeScale(TimeScale newtimescale)
{
    newtimescale.ticksPerPixel =
        std::clamp(newtimescale.ticksPerPixel, TimeScale::leastTicksPerPixel, TimeScale::greatestTicksPerPixel);
    if (newtimescale == m_timeScale || !newtimescale.isRepresentable(m_width()))
        return;
    m_timeScale = newtimescale;
    const int interval = followInterval(m_timeScale.ticksPerPixel);
    if (m_followNow && interval != m_followTimer.interval())
        m_followTimer.setInterval(interval);
    Q_EMIT timeScaleChanged(m_timeScale);
}

void TimeNavigator::scrollIntoView(RecordTime beginTime, RecordTime endTime)
{
    if (isDragging() || isMissing(beginTime) || isMissing(endTime))
        return;
    // Though it may be in sight: a key held down moves a dense axis only now and then.
    beginStep(Jumps);
    moveIntoView(beginTime, endTime);
    tellHistory();
}

void TimeNavigator::runIntoView(RecordTime beginTime, RecordTime endTime)
{
    if (isDragging() || isMissing(beginTime) || isMissing(endTime))
        return;
    if (hasStepsToCome() && m_steps == Jumps)
        finishGesture(); // the jump isn't the cause of where the axis runs from there
    moveIntoView(beginTime, endTime);
}

void TimeNavigator::moveIntoView(RecordTime beginTime, RecordTime endTime)
{
    const int width = m_width(), half = width / 2;
    const std::int64_t right = std::max(width - margin, half), left = std::min(half, margin);
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

void TimeNavigator::fitIntoView(RecordTime beginTime, RecordTime endTime)
{
    beginGesture();
    fit(beginTime, endTime);
    finishGesture();
}

void TimeNavigator::fitWhole(RecordTime beginTime, RecordTime endTime)
{
    fitIntoView(beginTime, endTime);
    m_whole = Whole{beginTime, endTime, m_timeScale};
}

void TimeNavigator::fit(RecordTime beginTime, RecordTime endTime)
{
    if (isMissing(beginTime) || isMissing(endTime))
        return;
    setFollowNow(false);
    const int width = m_width();
    const std::int64_t span = saturatedSubtract(ticksOf(endTime), ticksOf(beginTime));
    setTimeScale({beginTime, span / std::max(width - 2 * margin, 2 * margin), std::min(width / 2, margin)});
}

void TimeNavigator::goToTime(RecordTime time)
{
    if (isMissing(time))
        return;
    beginGesture();
    setFollowNow(false);
    setTimeScale({time, m_timeScale.ticksPerPixel, m_width() / 2});
    finishGesture();
}

void TimeNavigator::changeZoom(double multiplier, int midPixel)
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

void TimeNavigator::changeZoom(TimeScale startTimescale, QPoint delta)
{
    if (hasStepsToCome())
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
}

// ---- a drag of the axis

bool TimeNavigator::beginDrag(DragState state, int column)
{
    if (isDragging())
        return false;
    beginGesture();
    m_dragStartScale = m_timeScale.rebased(column);
    m_dragState = state;
    return true;
}

void TimeNavigator::beginPan(int column)
{
    beginDrag(Panning, column);
}

void TimeNavigator::pan(QPoint travel, int deadBand)
{
    if (m_dragState != Panning)
        return;
    const int dy = travel.y() < 0 ? std::min(0, travel.y() + deadBand) : std::max(0, travel.y() - deadBand);
    changeZoom(m_dragStartScale, QPoint(travel.x(), dy));
}

void TimeNavigator::beginRoll(int column)
{
    if (!beginDrag(Rolling, column))
        return;
    m_rollSpeed = m_rollPosition = 0;
    m_rollTimer.start();
}

void TimeNavigator::roll(int distance)
{
    m_rollSpeed = double(distance) * std::abs(distance);
}

void TimeNavigator::panTick()
{
    const double before = std::trunc(m_rollPosition);
    m_rollPosition += rollInterval * m_rollSpeed * -0.0001;
    if (std::trunc(m_rollPosition) == before)
        return;
    const auto rolled = std::int64_t(std::trunc(double(m_dragStartScale.originPixel) + m_rollPosition));
    setTimeScale({m_dragStartScale.originTick, m_dragStartScale.ticksPerPixel, rolled});
}

void TimeNavigator::endDrag()
{
    if (!isDragging())
        return;
    m_rollTimer.stop();
    m_dragState = Idle;
    finishDrag();
}

// ---- the way back

void TimeNavigator::beginGesture()
{
    finishGesture();
    m_history.begin(place());
}

/// Goes on with the gesture of the last step, if that was of the same kind and not long ago.
void TimeNavigator::beginStep(Steps steps)
{
    const bool goesOn = hasStepsToCome() && m_steps == steps;
    if (!goesOn && !isDragging())
        beginGesture();
    m_steps = steps;
    m_settleTimer.start(steps == Jumps ? landingTime : settleTime);
}

void TimeNavigator::finishGesture()
{
    m_settleTimer.stop();
    m_history.finish(place());
    tellHistory();
}

void TimeNavigator::finishDrag()
{
    if (m_history.isOpen() && !hasStepsToCome())
        finishGesture();
}

void TimeNavigator::tellHistory()
{
    const bool has = hasPreviousView();
    if (std::exchange(m_toldHasPrevious, has) != has)
        Q_EMIT hasPreviousViewChanged(has);
}

void TimeNavigator::forgetViews()
{
    m_settleTimer.stop();
    m_history.clear();
    tellHistory();
}

void TimeNavigator::goToPreviousView()
{
    const bool dragged = m_history.isOpen() && !hasStepsToCome();
    if (dragged)
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

void TimeNavigator::setFollowNow(bool on)
{
    if (on == m_followNow)
        return;
    // Starting is a gesture, which leaves a place that one may want back; running with the clock is none.
    if (on)
        beginGesture();
    m_followNow = on;
    if (on) {
        m_followTimer.start(followInterval(m_timeScale.ticksPerPixel));
        updateFollowNow();
        finishGesture();
    } else {
        m_followTimer.stop();
    }
    Q_EMIT followNowChanged(on);
}

void TimeNavigator::adaptToWidth()
{
    if (m_followNow)
        updateFollowNow();
    if (!isWhole())
        return;
    fit(m_whole->begin, m_whole->end);
    m_whole->fitted = m_timeScale;
}

void TimeNavigator::updateFollowNow()
{
    updateFollowNowAt(m_timeScale.ticksPerPixel);
}

void TimeNavigator::updateFollowNowAt(std::int64_t ticksPerPixel)
{
    const std::int64_t old = ticksOf(m_timeScale.originTick), ticks = m_timeScale.ticksPerPixel;
    const std::int64_t elapsed = saturatedSubtract(ticksOf(m_clock()), old);
    // The origin moves in whole pixels of the old scale, so that plots go on moving their images.
    const RecordTime origin = recordTimeFromTicks(saturatedAdd(old, elapsed - elapsed % ticks));
    const int width = m_width();
    setTimeScale({origin, ticksPerPixel >= 1 ? ticksPerPixel : ticks, std::max(width / 2, width - margin)});
}

} // namespace Tsb
