#pragma once

#include "records/record.h"
#include "spectra/smoothing.h"
#include "spectra/spectruminfo.h"

namespace SpectMath {

/// How Spectrum::smoothed treats the covariances: smoothed too, or copied.
enum class CovarianceSmoothing { smooth = 0, keep = 1 };

/// The values of one record under one description: density dN/dlog10(x) on the grid, x the native axis.
struct Spectrum {
    RealVector concentrations; ///< in info->concentrationUnit
    /// Bands 1, 1 from an inverter, 0, 0 from a file. Read it through a const reference, which is 0 outside of the
    /// band, and resize it without preserving, which would reach outside of the band.
    BandMatrix covariances;
    double currentRmsError = noValue;
    double currentMeanAbsError = noValue;
    double currentTotalError = noValue;
    std::int32_t status = 1; ///< 0 success, 1 not yet computed, 2 to 4 the failures of an inversion
    SpectrumInfoPointer info;

    /// info is set and concentrations has as many values as the native grid.
    bool isValid() const;

    /// The trapezoids of the density over the intervals of the log axis, n - 1 each; positive on a descending axis too.
    /// A covariance of the wrong size: a debug line, and the outputs stay as they were.
    void getFractions(RealVector &fractions, RealVector &uncertainties) const;
    /// Density or fraction, times the moment of the concentration type: at the point's radius for a density, at the
    /// geometric mean of both radii for a fraction. Both outputs empty for a wrong covariance size.
    void getDistribution(DistributionType distribution, ConcentrationType type, RealVector &values,
                         RealVector &uncertainties) const;
    /// Concentrations times the smoothing matrix (a dense product: one missing value makes the whole spectrum missing);
    /// status 1, no errors, so look at the status before. A copy where there is nothing to smooth, or where the matrix
    /// doesn't fit.
    Spectrum smoothed(double width, CovarianceSmoothing mode) const;
    Spectrum smoothed(const RealMatrix &matrix, CovarianceSmoothing mode) const;
};

/// The dot product of weights and concentrations, as by SpectrumInfo::fractionWeights; NaN for a failed spectrum or one
/// of another size.
double concentrationOf(const Spectrum &spectrum, const RealVector &weights);

/// log10 of a concentration; nothing and less than nothing lie below all decades.
double decadesOf(double concentration);

/// A spectrum in slab memory, for the many that live in a store.
std::shared_ptr<Spectrum> makeSpectrum();

/// The result of one inversion: the head of the record inverted, and its spectra in the order of the inverters.
struct SpectrumRecord : Spectrometer::RecordHead {
    SpectrumPointerList spectra;
    bool provisional = false;
};
using SpectrumRecordPointer = std::shared_ptr<SpectrumRecord>;

} // namespace SpectMath

Q_DECLARE_METATYPE(SpectMath::SpectrumRecordPointer)
