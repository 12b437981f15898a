#pragma once

#include <QString>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace Tsb {

/// Calls the function with the whole decades from floor(lower) up to but without ceil(upper), at most 22 of them. They
/// are counted in integers: a step of one is lost in limits of 1e17.
template<typename Function>
void forEachDecade(double lower, double upper, Function function)
{
    const double first = std::floor(lower);
    const int count = int(std::min(std::ceil(upper) - first, 22.0));
    for (int i = 0; i < count; ++i)
        function(first + i);
}

/// Where a decade's tick stands on a bar of `size` pixels that shows the decades from lower to upper.
double decadePixel(double decade, double lower, double upper, int size);

struct DecadeLabel {
    double left; ///< pixels
    QString text;
};

/// The texts on a bar `width` pixels wide that shows the decades from lower to upper: the values of the whole decades
/// on it, each centred on its tick, moved inward where an end of the bar would cut it, and left out where it would come
/// nearer than `gap` to the one before. Where less than two remain, the ends tell their values.
std::vector<DecadeLabel> decadeLabels(double lower, double upper, int width, int gap,
                                      const std::function<int(const QString &)> &widthOf);

} // namespace Tsb
