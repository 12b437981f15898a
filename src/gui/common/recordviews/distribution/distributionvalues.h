#pragma once

#include "gui/common/recordviews/distribution/plotoptions.h"
#include "spectra/spectrum.h"

#include <map>

namespace RecordViews {

/// What one spectrum shows: n points of the axis with a density's n values, or a fraction's n - 1 values between them.
struct DistributionValues {
    RealVector grid;
    RealVector values;
    RealVector uncertainties;

    std::size_t size() const { return values.size(); }
};

/// The axis on which a spectrum is shown. A radius is always shown as a diameter.
SpectMath::DistributionScale shownAxis(const SpectMath::SpectrumInfo &info, const PlotOptions &options);

/// Smooths spectra for the display; keeps the matrices of one width, one for each number of points.
class DisplaySmoothing {
public:
    /// The spectrum with its covariances as they were. A copy for width 0, and for more points than a matrix may have.
    SpectMath::Spectrum smoothed(const SpectMath::Spectrum &spectrum, double width);
    /// The matrix for that many points, built where the width isn't that of the last call or the number is new.
    const RealMatrix &matrix(std::size_t points, double width);

private:
    double m_width = 0;
    std::map<std::size_t, RealMatrix> m_matrices;
};

/// The values of a spectrum on an axis, smoothed. All vectors are empty for a spectrum without a description, one whose
/// inversion failed, and one whose vectors don't fit; they are clipped where only the axis is too short.
DistributionValues distributionValues(const SpectMath::Spectrum &spectrum, const PlotOptions &options,
                                      SpectMath::DistributionScale axis, DisplaySmoothing &smoothing);

/// A fraction's bar that a logarithmic axis can't show.
constexpr double smallBar = 2.220446049250313e-16;

/// The values as they are drawn: by ascending grid, NaN where nothing can be drawn. On a logarithmic vertical axis a
/// value below 0.001 of its uncertainty, and what isn't above 0, is NaN for a density and smallBar for a fraction.
DistributionValues drawnValues(DistributionValues values, const PlotOptions &options);

/// From the least to the greatest of some values; none of them at first.
struct Extent {
    double least = noValue;
    double greatest = noValue;

    bool isKnown() const { return least <= greatest; }
    /// Passes over NaN.
    void include(double value);
    void include(const Extent &other);
};

/// The extents of a plot.
struct DistributionExtents {
    Extent horizontal;
    Extent vertical;

    /// Horizontally from the first to the last point of a grid of more than 2 points; vertically over the values, on a
    /// logarithmic axis over the uncertainties as well and without small bars.
    void include(const DistributionValues &drawn, bool isLog);
};

/// The extent of a logarithmic axis: eight decades below the greatest value, at most.
Extent limitedToDecades(Extent extent);

} // namespace RecordViews
