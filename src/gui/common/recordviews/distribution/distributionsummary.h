#pragma once

#include "spectra/spectrum.h"

#include <QString>

namespace RecordViews {

/// A number size distribution in four numbers, NaN where they can't be told.
struct DistributionSummary {
    double total = noValue;              ///< number concentration, in the spectrum's unit
    double geometricMean = noValue;      ///< diameter, in the spectrum's size unit
    double geometricDeviation = noValue; ///< standard deviation, a factor of the diameter
    double mode = noValue;               ///< diameter of the point of greatest density
};

/// By trapezoids over the logarithm of the native axis. All NaN for a failed spectrum and one with missing values. What
/// lies below 0 counts in the total and has no diameter.
DistributionSummary distributionSummary(const SpectMath::Spectrum &spectrum);

/// One line without an end.
QString summaryText(const DistributionSummary &summary, const SpectMath::SpectrumInfo &info, const QString &name);
/// The same, or that the inversion failed, of a spectrum with a description.
QString summaryText(const SpectMath::Spectrum &spectrum, const QString &name);

} // namespace RecordViews
