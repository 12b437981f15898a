#include "gui/common/tsb/recordpicking.h"

namespace Tsb {

namespace {

/// Whether the earlier record is nearer; in a tie it isn't.
bool isNearerTo(const Record &earlier, const Record &later, RecordTime tick)
{
    return saturatedSubtract(ticksOf(tick), ticksOf(effectiveEnd(earlier))) <
           saturatedSubtract(ticksOf(later.beginTime), ticksOf(tick));
}

std::shared_ptr<Record> nearestRecord(const Datastore &store, RecordTime tick)
{
    if (store.isEmpty())
        return nullptr;
    const int next = store.lowerBoundIndex(tick);
    if (next == 0)
        return store.at(0);
    if (next == store.size())
        return store.at(next - 1);
    return isNearerTo(*store.at(next - 1), *store.at(next), tick) ? store.at(next - 1) : store.at(next);
}

std::shared_ptr<Record> lastEndingBefore(const Datastore &store, RecordTime tick)
{
    for (int index = store.lowerBoundIndex(tick) - 1; index >= 0; --index) {
        if (effectiveEnd(*store.at(index)) < tick)
            return store.at(index);
    }
    return nullptr;
}

} // namespace

RecordTime effectiveEnd(const Record &record)
{
    return isMissing(record.endTime) ? record.beginTime : record.endTime;
}

std::shared_ptr<Record> findRecord(const Datastore &store, RecordTime tick, int direction)
{
    if (direction == 0)
        return nearestRecord(store, tick);
    if (direction < 0)
        return lastEndingBefore(store, tick);
    const int index = store.lowerBoundIndex(tick);
    return index < store.size() ? store.at(index) : nullptr;
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
