#include "util/recordtime.h"

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();

} // namespace

std::int64_t saturatedAdd(std::int64_t a, std::int64_t b)
{
    std::int64_t sum;
    if (__builtin_add_overflow(a, b, &sum))
        return b < 0 ? least : greatest;
    return sum;
}

std::int64_t saturatedSubtract(std::int64_t a, std::int64_t b)
{
    std::int64_t difference;
    if (__builtin_sub_overflow(a, b, &difference))
        return b > 0 ? least : greatest;
    return difference;
}

std::int64_t saturatedMultiply(std::int64_t a, std::int64_t b)
{
    std::int64_t product;
    if (__builtin_mul_overflow(a, b, &product))
        return (a < 0) == (b < 0) ? greatest : least;
    return product;
}

RecordTime localTime(RecordTime time, std::int64_t utcOffsetSeconds)
{
    return recordTimeFromTicks(saturatedAdd(ticksOf(time), saturatedMultiply(utcOffsetSeconds, ticksPerSecond)));
}
