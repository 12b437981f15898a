#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <ratio>

/// A duration in ticks of 100 ns, independent of the platform's own clock.
using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10000000>>;

/// A moment of the system clock in ticks since 1970-01-01 00:00:00 UTC. Zero stands for a time that is missing.
using RecordTime = std::chrono::time_point<std::chrono::system_clock, Ticks>;

constexpr std::int64_t ticksPerSecond = 10'000'000;
constexpr std::int64_t ticksPerMillisecond = 10'000;
constexpr std::int64_t ticksPerDay = 86'400 * ticksPerSecond;

constexpr RecordTime recordTimeFromTicks(std::int64_t ticks)
{
    return RecordTime(Ticks(ticks));
}
constexpr std::int64_t ticksOf(RecordTime time)
{
    return time.time_since_epoch().count();
}
constexpr bool isMissing(RecordTime time)
{
    return ticksOf(time) == 0;
}

/// The open limits of a time span. Compare with them only: a difference or a sum with them overflows.
constexpr RecordTime earliestRecordTime = recordTimeFromTicks(std::numeric_limits<std::int64_t>::min());
constexpr RecordTime latestRecordTime = recordTimeFromTicks(std::numeric_limits<std::int64_t>::max());

/// The present moment.
inline RecordTime currentRecordTime()
{
    return std::chrono::time_point_cast<Ticks>(std::chrono::system_clock::now());
}

/// a + b, a - b and a * b, held at the ends of the 64-bit range instead of overflowing.
std::int64_t saturatedAdd(std::int64_t a, std::int64_t b);
std::int64_t saturatedSubtract(std::int64_t a, std::int64_t b);
std::int64_t saturatedMultiply(std::int64_t a, std::int64_t b);

/// The wall-clock time of a moment: the time moved by its offset from UTC in seconds.
RecordTime localTime(RecordTime time, std::int64_t utcOffsetSeconds);
