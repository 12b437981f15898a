#pragma once

#include "axis/pixelrange.h"
#include "axis/timescale.h"
#include "store/datastore.h"

#include <utility>
#include <vector>

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

struct ColumnParameters {
    TimeScale scale;
    int binCount = 0; ///< spectra of another length are left out
    bool fillGaps = false;
};

/// Neighbouring columns of the image that show one spectrum.
struct ColumnRun {
    int left, right; ///< right is exclusive
    const double *values;
};

/// Which spectrum each column of an image `width` columns wide shows: runs in ascending order, within [first, last),
/// with gaps where nothing is to be drawn.
std::vector<ColumnRun> planColumns(const SpectrogramSource &source, const ColumnParameters &parameters, int width,
                                   const PixelRange &columns, int offset);

} // namespace Tsb
