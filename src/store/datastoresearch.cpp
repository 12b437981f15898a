#include "store/datastore.h"

#include <algorithm>

namespace {

bool sameTimes(const Record &record, RecordTime begin, RecordTime end)
{
    return record.beginTime == begin && record.endTime == end;
}

/// The first of `count` elements that isn't below the key. Both ends are looked at first, so that appending in order of
/// time costs two looks.
template<typename IsBelow>
std::size_t bisect(std::size_t count, IsBelow isBelow)
{
    if (count == 0 || !isBelow(0))
        return 0;
    if (isBelow(count - 1))
        return count;
    std::size_t low = 0;
    std::size_t high = count - 1;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        (isBelow(middle) ? low : high) = middle;
    }
    return high;
}

} // namespace

Datastore::iterator Datastore::lowerBound(RecordTime time)
{
    return m_records.begin() + lowerBoundIndex(time);
}

int Datastore::lowerBoundIndex(RecordTime time) const
{
    const std::size_t count = m_records.size();
    const bool indexed = m_recordSpans.size() == count;
    const auto isBelow = [&](std::size_t i) {
        return indexed ? m_recordSpans.begin(i) < ticksOf(time) : m_records[i]->beginTime < time;
    };
    const auto fits = [&](std::size_t place) {
        return place <= count && (place == 0 || isBelow(place - 1)) && (place == count || !isBelow(place));
    };
    // Rows come in order of time: mostly the place after the last one found is meant, or the same again.
    const auto last = std::size_t(m_lastFound);
    std::size_t found;
    if (fits(last + 1))
        found = last + 1;
    else if (fits(last))
        found = last;
    else if (indexed)
        found = m_recordSpans.lowerBound(ticksOf(time));
    else
        found = bisect(count, isBelow);
    m_lastFound = int(found);
    return m_lastFound;
}

int Datastore::indexOfHead(const Spectrometer::RecordHead &head) const
{
    for (int i = lowerBoundIndex(head.beginTime); i < size() && at(i)->beginTime == head.beginTime; ++i) {
        if (static_cast<const Spectrometer::RecordHead &>(*at(i)) == head)
            return i;
    }
    return -1;
}

int Datastore::indexOf(RecordTime begin, RecordTime end) const
{
    for (int i = lowerBoundIndex(begin); i < size() && at(i)->beginTime == begin; ++i) {
        if (sameTimes(*at(i), begin, end))
            return i;
    }
    return -1;
}

int Datastore::firstIndexFrom(RecordTime time) const
{
    return lowerBoundIndex(time);
}

int Datastore::lastIndexEndingBy(RecordTime time) const
{
    int i = lowerBoundIndex(time);
    while (i < size() && at(i)->beginTime == time)
        ++i;
    do {
        --i;
    } while (i >= 0 && effectiveEnd(*at(i)) > time);
    return i;
}

int Datastore::indexOfRecord(const std::shared_ptr<Record> &record) const
{
    if (!record)
        return -1;
    for (int i = lowerBoundIndex(record->beginTime); i < size() && at(i)->beginTime == record->beginTime; ++i) {
        if (at(i) == record)
            return i;
    }
    return -1;
}

std::shared_ptr<Record> Datastore::neighbour(const std::shared_ptr<Record> &record, int steps) const
{
    const int index = indexOfRecord(record);
    const std::int64_t wanted = std::int64_t(index) + steps;
    return index < 0 || wanted < 0 || wanted >= size() ? nullptr : at(int(wanted));
}

std::shared_ptr<Record> Datastore::neighbourWithOpmode(const std::shared_ptr<Record> &record, int steps,
                                                       int opmode) const
{
    if (steps == 0)
        return record;
    const int index = indexOfRecord(record);
    if (index < 0)
        return nullptr;
    int answer = index;
    std::int64_t wanted = std::abs(std::int64_t(steps));
    const int direction = steps > 0 ? 1 : -1;
    for (int i = index + direction; i >= 0 && i < size() && wanted > 0; i += direction) {
        if (at(i)->opmode == opmode) {
            answer = i;
            --wanted;
        }
    }
    return at(answer);
}

std::size_t Datastore::lowerBoundOf(const Series &series, RecordTime time)
{
    return bisect(series.size(), [&series, time](std::size_t i) { return series[i].record->beginTime < time; });
}
