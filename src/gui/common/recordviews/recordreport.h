#pragma once

#include "records/recordmetadata.h"
#include "spectra/inverter.h"

#include <memory>

namespace RecordViews {

/// How the record's currents invert, as HTML: for each inverter of its operating mode, in order, a heading with the
/// spectrum's label and the report of the inversion, or why there is none. Inverts anew. Empty without inverters or
/// without metadata.
QString recordReport(const SpectMath::InverterList &inverters, const Spectrometer::FullRecord &record,
                     const Spectrometer::RecordMetadata *metadata);

} // namespace RecordViews
