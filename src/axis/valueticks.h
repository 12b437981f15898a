#pragma once

#include <QString>

#include <vector>

namespace Tsb {

struct ValueTick {
    double value = 0; ///< on the axis: a decade number on a logarithmic one
    QString label;    ///< empty for a tick without a text
    bool major = true;
};

/// Ticks of an axis that shows values from lower to upper (in any order) on `height` pixels with a text of `lineHeight`
/// pixels: steps of 1, 2 or 5 times a power of ten, one tick beyond each end. Steps above 1000 or below 0.001 get
/// labels with an exponent. Empty for an empty or infinite range, and never more than a thousand.
std::vector<ValueTick> linearTicks(double lower, double upper, int height, int lineHeight);

/// Ticks of an axis in decades: lower and upper (in any order) are logarithms, labels show 10 to the power. Decades
/// that stand too close are thinned to every k-th; between decades that stand far enough apart there are minor ticks at
/// 2 to 9, with labels where there is room. A range so short that it has less than two labels gets ticks at even steps
/// of the value too.
std::vector<ValueTick> logarithmicTicks(double lower, double upper, int height, int lineHeight);

/// A mantissa of 1 to 9 times 10 to a whole power, with six digits at most; also where a double can't hold it.
QString powerOfTenText(double decade, int mantissa = 1);

} // namespace Tsb
