#pragma once

#include <QMetaType>

/// The mapping between values and pixels of a vertical axis. Pixels count upward from the bottom edge of the contents.
struct ValueScale {
    bool valid = false;
    double originValue = 0; ///< the value at originPixel
    double valuePerPixel = 0;
    double originPixel = 0;

    double value(double y) const { return (y - originPixel) * valuePerPixel + originValue; }
    /// The inverse of value(); not finite on a scale without extent.
    double pixel(double v) const { return (v - originValue) / valuePerPixel + originPixel; }
    /// The same mapping with its origin at y.
    ValueScale rebased(double y) const { return {valid, value(y), valuePerPixel, y}; }
    /// True if all numbers are finite and the values at both ends of `height` pixels differ.
    bool isUsable(int height) const;
};

/// Two not-a-numbers are equal here.
bool operator==(const ValueScale &a, const ValueScale &b);
inline bool operator!=(const ValueScale &a, const ValueScale &b)
{
    return !(a == b);
}

namespace Tsb {
/// Equality in which two not-a-numbers are the same.
inline bool sameValue(double a, double b)
{
    return a == b || (a != a && b != b);
}
} // namespace Tsb

Q_DECLARE_METATYPE(ValueScale)
