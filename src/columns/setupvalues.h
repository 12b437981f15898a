#pragma once

#include <QVariantMap>

#include <optional>

namespace Tsb {

// What a view takes out of a stored setup. Anybody may have written it: a value of another type than expected counts as
// absent.

/// The finite number of a value that is one; none for texts, truth values, lists, NaN and infinities.
std::optional<double> finiteNumber(const QVariant &value);
/// A whole number of 32 bits.
std::optional<int> wholeNumber(const QVariant &value);
bool boolOr(const QVariantMap &map, const char *key, bool fallback);
/// The height of a view, held within 16 to 4096 pixels; none for 0 and less.
std::optional<int> viewHeight(const QVariant &value);

} // namespace Tsb
