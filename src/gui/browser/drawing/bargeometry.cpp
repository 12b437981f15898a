#include "gui/browser/drawing/bargeometry.h"

#include <algorithm>
#include <limits>

namespace Tsb {

namespace {

/// A position as whole columns and ticks of the next one: a scale that is moved by whole columns moves every bar by
/// exactly that, so that a picture that was shifted goes on as if it were drawn anew.
struct ExactPosition {
    std::int64_t columns = 0, rest = 0;
};

ExactPosition exactPosition(const TimeScale &scale, std::int64_t tick)
{
    constexpr std::int64_t farColumn = std::int64_t(1) << 40;
    std::int64_t span;
    if (__builtin_sub_overflow(tick, ticksOf(scale.originTick), &span))
        return {tick < ticksOf(scale.originTick) ? -farColumn : farColumn, 0};
    ExactPosition position{span / scale.ticksPerPixel, span % scale.ticksPerPixel};
    if (position.rest < 0) {
        --position.columns;
        position.rest += scale.ticksPerPixel;
    }
    position.columns = std::clamp(saturatedAdd(position.columns, scale.originPixel), -farColumn, farColumn);
    return position;
}

} // namespace

/// The raster engine rounds to 64ths of a pixel towards zero, which left of the image is the other way: done here, the
/// same way on both sides, and in whole numbers, since the last digit of a real one depends on the column.
BarEnds barEnds(const TimeScale &scale, std::int64_t begin, std::int64_t end)
{
    const ExactPosition from = exactPosition(scale, begin), to = exactPosition(scale, end);
    const std::int64_t ticks = scale.ticksPerPixel;
    const std::int64_t columns = to.columns - from.columns;
    constexpr std::int64_t phases = barPhases, half = phases / 2;
    if (columns > 1 || (columns == 1 && to.rest > from.rest))
        return {double(phases * from.columns + phases * from.rest / ticks + half) / phases,
                double(phases * to.columns + phases * to.rest / ticks - half) / phases};
    const std::int64_t middle = half * (from.columns + to.columns) + half * (from.rest + to.rest) / ticks;
    return {double(middle) / phases, double(middle) / phases};
}

double barHeight(int stripHeight, bool half)
{
    const double full = stripHeight - 3;
    return half ? std::max(full * 0.5 - 2, 1.0) : full;
}

QRectF barRect(const BarEnds &ends, int stripHeight, bool half, int first, int last)
{
    // Coordinates of a far zoom are beyond what the rasterizer can take.
    const double margin = 16;
    const double x0 = std::max(ends.x0, first - margin), x1 = std::min(ends.x1, last + margin);
    const double height = barHeight(stripHeight, half);
    return QRectF(x0, stripHeight * 0.5 - height * 0.5, std::max(0.0, x1 - x0), height);
}

// Quotients of whole numbers by up to 10^12 end at least 10^-12 below the next whole number. Moved up by half of that,
// they are truncated right whatever the rounding, as long as they aren't above 1400.
BarMiddles::BarMiddles(const TimeScale &scale, int column)
    : m_scale(scale), m_column(column), m_left(ticksOf(scale.tickAt(std::int64_t(column) - 1))),
      m_factor(barPhases * 0.5 / double(scale.ticksPerPixel)), m_roundingUp(0.5 / double(scale.ticksPerPixel))
{
    using Limits = std::numeric_limits<std::int64_t>;
    m_hasLeft = m_left != Limits::min() && m_left != Limits::max(); // tickAt() stops there
}

/// Whether all of them begin at most 16 columns behind the left, and none is longer than a column.
bool BarMiddles::areNear(const SpanIndex::Times &bars) const
{
    std::int64_t furthest;
    if (!m_hasLeft || bars.begins[0] < m_left ||
        __builtin_sub_overflow(bars.begins[bars.size - 1], m_left, &furthest) || furthest > 16 * m_scale.ticksPerPixel)
        return false;
    bool are = true;
    for (std::size_t k = 0; k < bars.size; ++k) {
        const std::uint64_t length = std::uint64_t(bars.ends[k]) - std::uint64_t(bars.begins[k]);
        are = are & (bars.ends[k] >= bars.begins[k]) & (length <= std::uint64_t(m_scale.ticksPerPixel));
    }
    return are;
}

void BarMiddles::find(const SpanIndex::Times &bars, int *middles) const
{
    if (bars.size == 0)
        return;
    if (!areNear(bars)) {
        for (std::size_t k = 0; k < bars.size; ++k)
            middles[k] = exactMiddle(bars.begins[k], bars.ends[k]);
        return;
    }
    for (std::size_t k = 0; k < bars.size; ++k) { // without a division
        const std::int64_t halves = 2 * (bars.begins[k] - m_left) + (bars.ends[k] - bars.begins[k]);
        middles[k] = int(double(halves) * m_factor + m_roundingUp) - barPhases;
    }
}

int BarMiddles::exactMiddle(std::int64_t begin, std::int64_t end) const
{
    constexpr double far = 1000;
    const double columns = std::clamp(barEnds(m_scale, begin, end).x0 - m_column, -far, far);
    return int(columns * barPhases); // exact: on the raster engine's grid
}

} // namespace Tsb
