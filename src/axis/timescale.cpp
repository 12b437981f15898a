#include "axis/timescale.h"

#include <algorithm>
#include <cmath>

int saturatedPixel(std::int64_t x)
{
    return int(std::clamp(x, -TimeScale::farPixel, TimeScale::farPixel));
}

int saturatedPixel(double x)
{
    if (std::isnan(x))
        return 0;
    return int(std::clamp(x, -double(TimeScale::farPixel), double(TimeScale::farPixel)));
}

RecordTime TimeScale::tickAt(std::int64_t x) const
{
    const std::int64_t span = saturatedMultiply(saturatedSubtract(x, originPixel), ticksPerPixel);
    return recordTimeFromTicks(saturatedAdd(ticksOf(originTick), span));
}

std::int64_t TimeScale::columnOf(RecordTime time) const
{
    const std::int64_t span = saturatedSubtract(ticksOf(time), ticksOf(originTick));
    return saturatedAdd(originPixel, span / ticksPerPixel);
}

int TimeScale::pixelAt(RecordTime time) const
{
    return saturatedPixel(columnOf(time));
}

double TimeScale::positionOf(RecordTime time) const
{
    const double span = double(saturatedSubtract(ticksOf(time), ticksOf(originTick)));
    return span / 1e7 / (double(ticksPerPixel) / 1e7) + double(originPixel);
}

TimeScale TimeScale::rebased(std::int64_t x) const
{
    return {tickAt(x), ticksPerPixel, x};
}

bool TimeScale::pixelShiftFrom(const TimeScale &other, int *shift) const
{
    std::int64_t span;
    if (ticksPerPixel != other.ticksPerPixel || isMissing(originTick) || isMissing(other.originTick) ||
        __builtin_sub_overflow(ticksOf(originTick), ticksOf(other.originTick), &span) || span % ticksPerPixel != 0)
        return false;
    *shift = saturatedPixel(saturatedAdd(saturatedSubtract(other.originPixel, originPixel), span / ticksPerPixel));
    return true;
}

bool TimeScale::isRepresentable(int width) const
{
    const auto inRange = [this](std::int64_t pixels) {
        std::int64_t columns, span, end;
        return !__builtin_sub_overflow(pixels, originPixel, &columns) &&
               !__builtin_mul_overflow(columns, ticksPerPixel, &span) &&
               !__builtin_add_overflow(span, ticksOf(originTick), &end);
    };
    return inRange(2 * std::int64_t(width)) && inRange(-std::int64_t(width));
}
