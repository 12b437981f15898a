#pragma once

#include "gui/browser/drawing/spectrogramrenderer.h"

#include <vector>

namespace Tsb {

/// Neighbouring columns of the image that show one spectrum.
struct ColumnRun {
    int left, right; ///< right is exclusive
    const double *values;
};

/// Which spectrum each column of an image `width` columns wide shows: runs in ascending order, within [first, last),
/// with gaps where nothing is to be drawn.
std::vector<ColumnRun> planColumns(const SpectrogramSource &source, const SpectrogramParameters &parameters, int width,
                                   const PixelRange &columns, int offset);

} // namespace Tsb
