#pragma once

#include "records/record.h"
#include "records/recordmetadata.h"
#include "spectra/inverter.h"

#include <deque>

namespace SpectMath {

/// Which of the inverters that were loaded are run on some records.
struct InverterChoice {
    InverterList used;     ///< in the order of loading
    InverterList replaced; ///< those that would be used but are the same as a later one
};

/// Used are those of modes that the records have; a record whose mode the metadata don't know has none. Inverters of
/// one hash are the same: the last of them is used.
InverterChoice chooseInverters(const InverterList &loaded, const std::deque<std::shared_ptr<Record>> &records,
                               const Spectrometer::RecordMetadata &metadata);

} // namespace SpectMath
