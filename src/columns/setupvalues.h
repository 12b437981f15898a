#pragma once

#include <QVariantMap>

#include <optional>
#include <utility>

namespace Tsb {

// Reading of a view's stored setup. The setup may come from anywhere: a value of another type than expected counts as
// absent.

/// The value if it is a finite number, or the text of one, as "1e5" is in setups; none for truth values, lists, NaN and
/// infinities.
std::optional<double> finiteNumber(const QVariant &value);
/// A whole number of 32 bits.
std::optional<int> wholeNumber(const QVariant &value);
/// Both ends of a range, the lower of which isn't above the upper; none where either is no finite number.
std::optional<std::pair<double, double>> finiteRange(const QVariantMap &map, const char *lowerKey,
                                                     const char *upperKey);
bool boolOr(const QVariantMap &map, const char *key, bool fallback);
/// The height of a view, held within 16 to 4096 pixels; none for 0 and less.
std::optional<int> viewHeight(const QVariant &value);

} // namespace Tsb
