#include "batch/render/timespan.h"

#include "util/timeformat.h"
#include "util/timeparse.h"

#include <algorithm>

namespace Batch {

namespace {

bool isDay(const QString &text)
{
    return !text.contains(QLatin1Char(':'));
}

bool liesIn(const TimeSpan &span, const Record &record)
{
    return record.beginTime < span.end && (effectiveEnd(record) > span.begin || record.beginTime >= span.begin);
}

/// The words as local times of that offset.
TimeSpan readBy(std::int64_t utcOffset, const RenderOptions &options, const Datastore &store)
{
    TimeSpan span{store.at(0)->beginTime, effectiveEnd(*store.records().back()), utcOffset};
    if (!options.from.isEmpty())
        parseLocalTime(options.from, utcOffset, &span.begin);
    if (!options.to.isEmpty() && parseLocalTime(options.to, utcOffset, &span.end) && isDay(options.to))
        span.end = recordTimeFromTicks(saturatedAdd(ticksOf(span.end), ticksPerDay));
    return span;
}

/// That of the first record in the span, else of the last before it.
std::int64_t offsetIn(const TimeSpan &span, const Datastore &store)
{
    const auto lies = [&span](const auto &record) { return liesIn(span, *record); };
    const auto shown = std::find_if(store.records().begin(), store.records().end(), lies);
    if (shown != store.records().end())
        return (*shown)->beginUtcOffset;
    return store.at(std::max(0, store.lowerBoundIndex(span.begin) - 1))->beginUtcOffset;
}

} // namespace

TimeSpan spanToShow(const RenderOptions &options, const Datastore &store)
{
    // Clocks may have been changed since the first record of the folder.
    const TimeSpan nearly = readBy(store.at(0)->beginUtcOffset, options, store);
    return readBy(offsetIn(nearly, store), options, store);
}

bool hasRecordsIn(const TimeSpan &span, const Datastore &store)
{
    const auto lies = [&span](const auto &record) { return liesIn(span, *record); };
    return std::any_of(store.records().begin(), store.records().end(), lies);
}

QString textOf(const TimeSpan &span, const RenderOptions &options)
{
    const QString format = QStringLiteral("%Y-%m-%d %H:%M:%S");
    const QString begin = timeToString(localTime(span.begin, span.utcOffset), format);
    const QString end = timeToString(localTime(span.end, span.utcOffset), format);
    if (options.to.isEmpty() && !options.from.isEmpty())
        return QStringLiteral("from %1 on").arg(begin);
    if (options.from.isEmpty() && !options.to.isEmpty())
        return QStringLiteral("before %1").arg(end);
    return QStringLiteral("from %1 to %2").arg(begin, end);
}

} // namespace Batch
