#include "columns/recordpicking.h"

namespace Tsb {

namespace {

/// Whether the earlier record is nearer; in a tie it isn't.
bool isNearerTo(const Record &earlier, const Record &later, RecordTime tick)
{
    return saturatedSubtract(ticksOf(tick), ticksOf(effectiveEnd(earlier))) <
           saturatedSubtract(ticksOf(later.beginTime), ticksOf(tick));
}

/// The store's records, or those of one series, as one searchable row.
struct StoreSequence {
    const Datastore &store;
    int size() const { return store.size(); }
    const std::shared_ptr<Record> &at(int i) const { return store.at(i); }
    int lowerBound(RecordTime tick) const { return store.lowerBoundIndex(tick); }
};

struct SeriesSequence {
    const Datastore::Series &series;
    const SpanIndex &spans;
    int size() const { return int(series.size()); }
    const std::shared_ptr<Record> &at(int i) const { return series[std::size_t(i)].record; }
    int lowerBound(RecordTime tick) const { return int(spans.lowerBound(ticksOf(tick))); }
};

template<class Sequence>
std::shared_ptr<Record> nearestRecord(const Sequence &records, RecordTime tick)
{
    if (records.size() == 0)
        return nullptr;
    const int next = records.lowerBound(tick);
    if (next == 0)
        return records.at(0);
    if (next == records.size())
        return records.at(next - 1);
    return isNearerTo(*records.at(next - 1), *records.at(next), tick) ? records.at(next - 1) : records.at(next);
}

template<class Sequence>
std::shared_ptr<Record> lastEndingBefore(const Sequence &records, RecordTime tick)
{
    for (int index = records.lowerBound(tick) - 1; index >= 0; --index) {
        if (effectiveEnd(*records.at(index)) < tick)
            return records.at(index);
    }
    return nullptr;
}

template<class Sequence>
std::shared_ptr<Record> findIn(const Sequence &records, RecordTime tick, int direction)
{
    if (direction == 0)
        return nearestRecord(records, tick);
    if (direction < 0)
        return lastEndingBefore(records, tick);
    const int index = records.lowerBound(tick);
    return index < records.size() ? records.at(index) : nullptr;
}

} // namespace

std::shared_ptr<Record> findRecord(const Datastore &store, RecordTime tick, int direction)
{
    return findIn(StoreSequence{store}, tick, direction);
}

std::shared_ptr<Record> findRecord(const Datastore::Series &series, const SpanIndex &spans, RecordTime tick,
                                   int direction)
{
    return findIn(SeriesSequence{series, spans}, tick, direction);
}

std::shared_ptr<Record> nearestOfOpmode(const Datastore &store, const std::shared_ptr<Record> &found, RecordTime tick,
                                        int opmode)
{
    // The store's search answers with the start itself when it meets no other.
    const auto search = [&](int steps) {
        const auto record = store.neighbourWithOpmode(found, steps, opmode);
        return record == found ? nullptr : record;
    };
    const auto previous = search(-1), next = search(1);
    if (!previous || !next)
        return previous ? previous : next;
    return isNearerTo(*previous, *next, tick) ? previous : next;
}

} // namespace Tsb
