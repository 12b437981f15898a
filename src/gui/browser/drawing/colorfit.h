#pragma once

#include "gui/browser/drawing/spectrogramrenderer.h"
#include "spectra/decadehistogram.h"

#include <optional>
#include <utility>

namespace Tsb {

using SpectMath::DecadeHistogram;

/// The limits in decades that leave out 2.5 % of the values at each end; none for an empty histogram, or when all
/// values lie so close together that the lower limit isn't below the upper. With a few per cent of exact zeros counted
/// a limit would fall out of any scale.
std::optional<std::pair<double, double>> colorLimits(const DecadeHistogram &histogram);

/// Adds every value of every spectrum that is to be drawn around the columns 0 to width, smoothed if there is a matrix.
/// Where those are most of the series and the histogram of all such values is known, the others are taken out of it.
void addVisibleValues(DecadeHistogram &histogram, const SpectrogramSource &source, const TimeScale &scale, int width,
                      int valuesPerSpectrum, const RealMatrix *smoothing, const DecadeHistogram *ofAll = nullptr);

} // namespace Tsb
