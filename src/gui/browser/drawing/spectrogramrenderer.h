#pragma once

#include "gui/browser/drawing/colormap.h"
#include "gui/browser/drawing/spectrogramcolumns.h"
#include "util/numeric.h"

#include <QColor>
#include <QImage>

namespace Tsb {

struct SpectrogramParameters : ColumnParameters {
    double colorLower = 1; ///< decades; the limits of the colour map
    double colorUpper = 3;
    Colormap::Map colormap;                ///< empty: nothing is drawn
    bool reversedRows = false;             ///< the last bin on the bottom row
    bool marksZeros = false;               ///< see markZeros()
    const RealMatrix *smoothing = nullptr; ///< binCount by binCount; null: off
};

/// Paints the columns [columns.first, columns.last) of a time axis into a 32-bit image whose column 0 is the axis's
/// column -offset. Columns without data stay as they are, and so does every column outside the range. The image is as
/// high as the strip.
///
/// A record takes the columns from its begin to its end, at least one, and paints over an earlier one that it overlaps,
/// unless it ends within what is painted already. With fillGaps a gap of less than 10 columns is closed from both
/// sides, one of 10 to 20 less and less. Bins stand evenly, the first on the bottom edge and the last on the top edge,
/// and log10 of the values is interpolated between them; an interval with a not-a-number has the colour of 0.
///
/// Costs the columns painted: records that can't show are passed over by blocks.
void renderSpectrogram(const SpectrogramSource &source, const SpectrogramParameters &parameters, QImage &image,
                       const PixelRange &columns, int offset = 0);

/// The colour where there are no data: white, or a half-tone of the map's lowest colour.
QColor spectrogramBackground(const Colormap::Map &colormap, bool white);

/// values times the matrix, as a row vector; both have `size` elements and don't overlap.
void multiplyRow(const double *values, const RealMatrix &matrix, double *result, std::size_t size);

} // namespace Tsb
