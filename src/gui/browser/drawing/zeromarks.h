#pragma once

#include <QImage>

#include <functional>
#include <vector>

namespace Tsb {

/// Paints stripes over the bins whose values are 0 or below, half way to the next bin on both sides, in the columns
/// [left, right) of an image where the values are drawn. They stand in the order of the strip, from the bottom. A bin
/// with a value keeps its own colour up to the stripes, instead of blending into the lowest colour.
void markZeros(const std::vector<double> &values, int left, int right, const std::function<uint(double value)> &colorOf,
               QImage &image);

/// The colour of that row in stripes: two grays by turns, which no colour map has in this order.
uint zeroStripe(int row);

} // namespace Tsb
