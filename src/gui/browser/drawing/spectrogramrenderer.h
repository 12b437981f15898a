#pragma once

#include "axis/pixelrange.h"
#include "axis/timescale.h"
#include "gui/browser/drawing/colormap.h"
#include "store/datastore.h"
#include "util/numeric.h"

#include <QColor>
#include <QImage>

namespace Tsb {

/// One spectrum's records in order of time: the series of a store and the times of its entries. Borrowed for a call.
struct SpectrogramSource {
    const Datastore::Series &series;
    const SpanIndex &spans; ///< entry for entry

    /// The values of an entry that is to be drawn: it has a spectrum of that length and of status 0. Null otherwise.
    const double *values(std::size_t entry, std::size_t binCount) const { return valuesOf(series[entry], binCount); }
    static const double *valuesOf(const SpectrumRecord &entry, std::size_t binCount);
    /// The entries that can show on the columns from first to last: those that begin from two columns before to two
    /// behind, and one more on each side.
    std::pair<std::size_t, std::size_t> entriesAround(const TimeScale &scale, int first, int last) const;
};

struct SpectrogramParameters {
    TimeScale scale;
    int binCount = 0;      ///< spectra of another length are left out
    double colorLower = 1; ///< decades; the limits of the colour map
    double colorUpper = 3;
    Colormap::Map colormap; ///< empty: nothing is drawn
    bool fillGaps = false;
    bool reversedRows = false;             ///< the last bin on the bottom row
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

/// What shows where there are no data: white, or a half-tone of the map's lowest colour.
QColor spectrogramBackground(const Colormap::Map &colormap, bool white);

/// values times the matrix, as a row vector; both have `size` elements and don't overlap.
void multiplyRow(const double *values, const RealMatrix &matrix, double *result, std::size_t size);

} // namespace Tsb
