#pragma once

#include "gui/common/recordviews/distribution/distributionvalues.h"
#include "records/record.h"

namespace RecordViews {

/// "diameter (nm)"
QString horizontalTitle(const SpectMath::SpectrumInfo &info, SpectMath::DistributionScale axis);
/// "dn/dlogD (1/cm^3)", or "n (1/cm^3)" for fractions
QString verticalTitle(const SpectMath::SpectrumInfo &info, const PlotOptions &options,
                      SpectMath::DistributionScale axis);

/// The local begin and end of a record, or the begin alone.
QString recordTimeText(const Spectrometer::RecordHead &head);

/// A spectrum as lines of a spreadsheet: points, values and uncertainties, each behind a name with its unit, with tabs
/// between. "# Inversion failed\n" for a failed one.
QString spectrumText(const SpectMath::Spectrum &spectrum, const PlotOptions &options, SpectMath::DistributionScale axis,
                     DisplaySmoothing &smoothing);

} // namespace RecordViews
