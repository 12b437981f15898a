#pragma once

#include "gui/common/tsb/timescale.h"
#include "records/recordmetadata.h"
#include "store/spanindex.h"

#include <QRgb>

#include <vector>

namespace Tsb {

/// TimeScale::positionOf for many moments: the same numbers, with what doesn't change worked out once.
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

/// The middle of an entry, half way from its begin to its end.
inline std::int64_t middleTick(const SpanIndex &spans, std::size_t i)
{
    const std::int64_t begin = spans.begin(i);
    std::int64_t span;
    if (__builtin_sub_overflow(spans.end(i), begin, &span))
        return begin;
    return begin + span / 2;
}

/// A place in one spectrum series while several are drawn together.
struct ScatterCursor {
    const SpanIndex *spans;
    const double *values;
    QRgb color;
    std::size_t next;
    std::size_t end;
};

/// Visits the entries of all cursors in order of their begins, those that begin together in the order of the cursors:
/// the order of the records.
template<typename Visit>
void visitInTimeOrder(std::vector<ScatterCursor> &cursors, Visit visit)
{
    for (;;) {
        ScatterCursor *earliest = nullptr;
        std::int64_t begin = 0;
        for (ScatterCursor &cursor : cursors) {
            if (cursor.next < cursor.end && (!earliest || cursor.spans->begin(cursor.next) < begin)) {
                earliest = &cursor;
                begin = cursor.spans->begin(cursor.next);
            }
        }
        if (!earliest)
            return;
        visit(*earliest, earliest->next++);
    }
}

/// The electrometer's name, with " pos" or " neg" behind it where its channel is of that group.
QString electrometerSeriesName(const Spectrometer::RecordMetadata &metadata, int electrometer);

} // namespace Tsb
