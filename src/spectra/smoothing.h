#pragma once

#include "util/numeric.h"

namespace SpectMath {

/// The raised-cosine window of the given width on `order` points, its kernel folded back at both ends of the grid:
/// M(i, j) = K(i - j) + K(i + j + 1) + K(2 order - 1 - i - j). Symmetric; rows sum to 1 as long as the kernel is
/// shorter than the grid. Width 0 is the identity, and so is any width that isn't finite; above 1e6 it counts as 1e6.
RealMatrix smoothingWindowMatrix(int order, double width);

} // namespace SpectMath
