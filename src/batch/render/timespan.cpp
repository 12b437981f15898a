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

} // namespace

TimeSpan spanToShow(const RenderOptions &options, const Datastore &store)
{
    const Record &first = *store.at(0);
    TimeSpan span{first.beginTime, effectiveEnd(*store.records().back())};
    if (!options.from.isEmpty())
        parseLocalTime(options.from, first.beginUtcOffset, &span.begin);
    if (!options.to.isEmpty() && parseLocalTime(options.to, first.beginUtcOffset, &span.end) && isDay(options.to))
        span.end = recordTimeFromTicks(saturatedAdd(ticksOf(span.end), ticksPerDay));
    return span;
}

bool hasRecordsIn(const TimeSpan &span, const Datastore &store)
{
    const auto lies = [&span](const auto &record) {
        return record->beginTime < span.end && (effectiveEnd(*record) > span.begin || record->beginTime >= span.begin);
    };
    return std::any_of(store.records().begin(), store.records().end(), lies);
}

QString textOf(const TimeSpan &span, const RenderOptions &options, std::int64_t utcOffset)
{
    const QString format = QStringLiteral("%Y-%m-%d %H:%M:%S");
    const QString begin = timeToString(localTime(span.begin, utcOffset), format);
    const QString end = timeToString(localTime(span.end, utcOffset), format);
    if (options.to.isEmpty() && !options.from.isEmpty())
        return QStringLiteral("from %1 on").arg(begin);
    if (options.from.isEmpty() && !options.to.isEmpty())
        return QStringLiteral("before %1").arg(end);
    return QStringLiteral("from %1 to %2").arg(begin, end);
}

} // namespace Batch
