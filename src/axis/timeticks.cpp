#include "axis/timeticks.h"

#include "util/timeformat.h"

#include <algorithm>
#include <iterator>

namespace Tsb {

namespace {

struct TickRow {
    std::int64_t stepMilliseconds;
    const char *tickFormat;
    const char *groupFormat;
};

// The last row of each table is what remains when no step exceeds the span.
constexpr TickRow tickRows[] = {
    {1'000, "%S", "%Y-%m-%d %H:%M"},   {5'000, "%S", "%Y-%m-%d %H:%M"},   {10'000, "%S", "%Y-%m-%d %H:%M"},
    {30'000, "%S", "%Y-%m-%d %H:%M"},  {60'000, "%H:%M", "%Y-%m-%d"},     {300'000, "%H:%M", "%Y-%m-%d"},
    {900'000, "%H:%M", "%Y-%m-%d"},    {1'800'000, "%H:%M", "%Y-%m-%d"},  {3'600'000, "%H:00", "%Y-%m-%d"},
    {10'800'000, "%H:00", "%Y-%m-%d"}, {21'600'000, "%H:00", "%Y-%m-%d"}, {43'200'000, "%H:00", "%Y-%m-%d"},
    {86'400'000, "%d", "%Y-%m"},       {86'400'000, "", "%Y-%m"},
};

constexpr TickRow cursorRows[] = {
    {1'000, "%H:%M:%S", "%Y-%m-%d"},   {60'000, "%H:%M:%S", "%Y-%m-%d"}, {3'600'000, "%H:%M", "%Y-%m-%d"},
    {86'400'000, "%H:00", "%Y-%m-%d"}, {86'400'000, "", "%Y-%m-%d"},
};

constexpr int tickSpacing = 60; // columns that a step has to exceed
constexpr int leastTickDistance = 4;
constexpr std::int64_t secondsPerHour = 3600;
constexpr std::int64_t daysOfLongestMonth = 31;

/// Days of a month that are labelled together: the first and every step-th after it up to the last one.
struct DaySet {
    int step;
    int last;
    int leastDistance; ///< in days, between neighbours, from the last one to the first of March included
};
constexpr DaySet daySets[] = {{1, 31, 1}, {5, 26, 3}, {10, 21, 8}, {15, 16, 13}};

/// The first set whose labels keep their distance; null if there is none.
const DaySet *daySetFor(std::int64_t ticksPerPixel, int textWidth)
{
    const auto hasRoom = [=](const DaySet &days) {
        return 2 * days.leastDistance * ticksPerDay >= 3 * textWidth * ticksPerPixel;
    };
    const auto found = std::find_if(std::begin(daySets), std::end(daySets), hasRoom);
    return found == std::end(daySets) ? nullptr : found;
}

template<std::size_t count>
const TickRow &rowFor(const TickRow (&rows)[count], std::int64_t span)
{
    const auto exceeds = [span](const TickRow &row) { return row.stepMilliseconds * ticksPerMillisecond > span; };
    const auto fallback = std::end(rows) - 1;
    return *std::find_if(std::begin(rows), fallback, exceeds);
}

QString text(std::int64_t tick, std::int64_t offsetSeconds, const char *format)
{
    const RecordTime local = localTime(recordTimeFromTicks(tick), offsetSeconds);
    if (*format == '\0' || ticksOf(local) < 0)
        return {};
    return timeToString(local, QString::fromLatin1(format));
}

/// The label of a tick at a day's step, if its day is one of the set.
QString dayText(std::int64_t tick, std::int64_t offsetSeconds, const DaySet *days)
{
    const QString day = days ? text(tick, offsetSeconds, "%d") : QString();
    const int number = day.toInt();
    return number > 0 && number <= days->last && (number - 1) % days->step == 0 ? day : QString();
}

/// Whole hours would be wrong labels where the offset isn't a number of them.
const char *labelFormat(const TickRow &row, std::int64_t offsetSeconds)
{
    const bool wholeHours = qstrcmp(row.tickFormat, "%H:00") == 0;
    return wholeHours && offsetSeconds % secondsPerHour != 0 ? "%H:%M" : row.tickFormat;
}

/// The greatest multiple of the step, counted from midnight, that isn't after the time; also before the epoch.
std::int64_t alignedTick(std::int64_t time, std::int64_t step)
{
    std::int64_t day = time / ticksPerDay;
    if (time % ticksPerDay < 0)
        --day;
    const std::int64_t midnight = saturatedMultiply(day, ticksPerDay);
    const std::int64_t sinceMidnight = saturatedSubtract(time, midnight);
    return midnight + sinceMidnight / step * step;
}

} // namespace

TimeAxis timeAxis(const TimeScale &scale, int width, std::int64_t offsetSeconds, const TimeTextWidths &texts)
{
    TimeAxis axis;
    const TickRow &row = rowFor(tickRows, scale.ticksPerPixel * tickSpacing);
    const char *const format = labelFormat(row, offsetSeconds);
    const bool labelsSomeDays = *format == '\0';
    const DaySet *const days = labelsSomeDays ? daySetFor(scale.ticksPerPixel, texts.day) : nullptr;
    const std::int64_t step = row.stepMilliseconds * ticksPerMillisecond;
    const std::int64_t left = ticksOf(scale.tickAt(0));
    const std::int64_t end = saturatedAdd(ticksOf(scale.tickAt(width)), step);
    const bool drawn = step / scale.ticksPerPixel >= leastTickDistance;
    if (left > end)
        return axis;

    const bool monthsHaveRoom = daysOfLongestMonth * ticksPerDay / scale.ticksPerPixel + 1 >= texts.month;
    const char *const cellFormat = monthsHaveRoom ? row.groupFormat : "%Y";
    std::int64_t tick = alignedTick(left, step);
    QString lastLabel, group = text(tick, offsetSeconds, row.groupFormat), cell = text(tick, offsetSeconds, cellFormat);
    int cellLeft = -1;
    while (tick < end) {
        tick = saturatedAdd(tick, step);
        const int x = scale.pixelAt(recordTimeFromTicks(tick));
        QString label = labelsSomeDays ? dayText(tick, offsetSeconds, days) : text(tick, offsetSeconds, format);
        if (label == lastLabel)
            label.clear();
        else
            lastLabel = label;
        axis.ticks.push_back({x, drawn || !label.isEmpty(), label});

        const QString nextGroup = text(tick, offsetSeconds, row.groupFormat);
        if (nextGroup == group && tick < end)
            continue;
        axis.boundaries.push_back(x);
        group = nextGroup;
        const QString nextCell = text(tick, offsetSeconds, cellFormat);
        if (nextCell == cell && tick < end)
            continue;
        if (const TimeGroup closed{std::max(0, cellLeft), std::min(x, width), cell}; closed.left < closed.right)
            axis.groups.push_back(closed);
        cell = nextCell;
        cellLeft = x;
    }
    return axis;
}

TimeCursorLabels timeCursorLabels(const TimeScale &scale, std::int64_t x, std::int64_t offsetSeconds)
{
    const TickRow &row = rowFor(cursorRows, scale.ticksPerPixel);
    const std::int64_t tick = ticksOf(scale.tickAt(x));
    return {text(tick, offsetSeconds, row.groupFormat), text(tick, offsetSeconds, row.tickFormat)};
}

GroupPlacing groupPlacing(const TimeGroup &group, int width, int textWidth)
{
    if (textWidth <= group.right - group.left)
        return GroupPlacing::Centred;
    const bool cutLeft = group.left == 0, cutRight = group.right == width;
    if (cutLeft == cutRight)
        return cutLeft ? GroupPlacing::Centred : GroupPlacing::Omitted;
    return cutRight ? GroupPlacing::Left : GroupPlacing::Right;
}

} // namespace Tsb
