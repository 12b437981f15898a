#pragma once

#include "records/record.h"
#include "spectra/spectrum.h"

namespace DataExport {

/// The record's spectrum of that very description, else of an equal one. Null where there is none, where its inversion
/// failed, or where its size isn't that of the description's grid.
const SpectMath::Spectrum *usableSpectrum(const Record &record, const SpectMath::SpectrumInfoPointer &info);

/// The roots of the spectrum's variances; NaN where its covariances have another size.
void standardDeviations(const SpectMath::Spectrum &spectrum, std::vector<double> *deviations);

} // namespace DataExport
