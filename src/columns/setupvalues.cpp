#include "columns/setupvalues.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tsb {

namespace {

constexpr double leastHeight = 16;
constexpr double greatestHeight = 4096;

} // namespace

std::optional<double> finiteNumber(const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::QString: {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<int> wholeNumber(const QVariant &value)
{
    const auto number = finiteNumber(value);
    if (!number || *number != std::trunc(*number) || *number < std::numeric_limits<int>::min() ||
        *number > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(*number);
}

std::optional<std::pair<double, double>> finiteRange(const QVariantMap &map, const char *lowerKey, const char *upperKey)
{
    const auto lower = finiteNumber(map.value(QLatin1String(lowerKey)));
    const auto upper = finiteNumber(map.value(QLatin1String(upperKey)));
    if (!lower || !upper || *lower > *upper)
        return std::nullopt;
    return std::pair(*lower, *upper);
}

bool boolOr(const QVariantMap &map, const char *key, bool fallback)
{
    const QVariant value = map.value(QLatin1String(key));
    return value.type() == QVariant::Bool ? value.toBool() : fallback;
}

std::optional<int> viewHeight(const QVariant &value)
{
    const auto height = finiteNumber(value);
    if (!height || !(*height > 0))
        return std::nullopt;
    return int(std::clamp(*height, leastHeight, greatestHeight));
}

} // namespace Tsb
