#pragma once

#include "axis/timescale.h"
#include "records/recordmetadata.h"
#include "store/spanindex.h"

#include <QRgb>

#include <utility>
#include <vector>

namespace Tsb {

/// TimeScale::positionOf for many moments: the same numbers, with the constant parts worked out once.
class PositionMap {
public:
    explicit PositionMap(const TimeScale &scale)
        : m_origin(ticksOf(scale.originTick)), m_secondsPerPixel(double(scale.ticksPerPixel) / 1e7),
          m_originPixel(double(scale.originPixel))
    {
    }
    double operator()(std::int64_t tick) const
    {
        std::int64_t span;
        if (__builtin_sub_overflow(tick, m_origin, &span))
            return tick < m_origin ? -1e18 : 1e18;
        return double(span) / 1e7 / m_secondsPerPixel + m_originPixel;
    }

private:
    std::int64_t m_origin;
    double m_secondsPerPixel;
    double m_originPixel;
};

/// The column that a marker stands on, halves rounded up as points are drawn. Remembers the times of the column found
/// last, as most moments lie on the same as the one before.
class ColumnFinder {
public:
    /// Columns far outside of first .. last - 1 come out as some column outside.
    ColumnFinder(const TimeScale &scale, int first, int last);

    int operator()(std::int64_t tick) { return tick >= m_from && tick < m_until ? m_column : find(tick); }
    /// Whether all entries of the block that holds entry i stand on the column found last.
    bool holdsBlockOf(const SpanIndex &spans, std::size_t i) const { return spans.blockLiesWithin(i, m_from, m_until); }
    int column() const { return m_column; }
    /// Where the column found last ends, about.
    std::int64_t until() const { return m_until; }

private:
    int find(std::int64_t tick);

    TimeScale m_scale;
    PositionMap m_position;
    int m_first, m_last;
    int m_column = 0;
    std::int64_t m_from = 0, m_until = 0; ///< times that are surely on the column, if not all of them
};

/// The middle of an entry, half way from its begin to its end.
inline std::int64_t middleTick(std::int64_t begin, std::int64_t end)
{
    std::int64_t span;
    return __builtin_sub_overflow(end, begin, &span) ? begin : begin + span / 2;
}

/// The entries whose spans may touch the columns first - 1 .. last. They are found by walking back from the last of
/// them; the walk stops at the first entry that ends too early.
std::pair<std::size_t, std::size_t> runInSight(const SpanIndex &spans, const TimeScale &scale, int first, int last);

/// A place in one spectrum series while several are drawn together.
struct ScatterCursor {
    const SpanIndex *spans;
    std::size_t next;
    std::size_t end;
};

/// How many entries all cursors have in common from where they stand, up to the end of a block: those of the same
/// records. 0 if the next ones differ, or at an end.
std::size_t commonRun(const std::vector<ScatterCursor> &cursors);

/// Visits some entries of all cursors in order of their begins, those that begin together in the order of the cursors:
/// the order of the records. Returns whether there were that many entries.
template<typename Visit>
bool visitInTimeOrder(std::vector<ScatterCursor> &cursors, std::size_t count, Visit visit)
{
    for (; count > 0; --count) {
        ScatterCursor *earliest = nullptr;
        std::int64_t begin = 0;
        for (ScatterCursor &cursor : cursors) {
            if (cursor.next < cursor.end && (!earliest || cursor.spans->begin(cursor.next) < begin)) {
                earliest = &cursor;
                begin = cursor.spans->begin(cursor.next);
            }
        }
        if (!earliest)
            return false;
        visit(*earliest, earliest->next++);
    }
    return true;
}

/// The electrometer's name, with " pos" or " neg" behind it where its channel is of that group.
QString electrometerSeriesName(const Spectrometer::RecordMetadata &metadata, int electrometer);

} // namespace Tsb
