#pragma once

#include "datafiles/plainfileoutput.h"
#include "store/datastore.h"

#include <functional>

namespace Batch {

/// The spectra that are written of a record; asked once for each, in order.
using SpectraSource = std::function<const SpectMath::SpectrumPointerList &(const Record &record)>;

/// Writes the spectra rows of all records in order, each record's own row behind if `records` says so, and shows the
/// progress under that verb. False if it was interrupted, which it is at the end of a day.
bool writeInOrder(Spectrometer::PlainFileOutput &output, const Datastore &store, const QString &verb, bool records,
                  const SpectraSource &spectraOf);

} // namespace Batch
