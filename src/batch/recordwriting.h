#pragma once

#include "datafiles/writing/recordwriting.h"

namespace Batch {

/// Writes the rows of all records in order and shows the progress under that verb. `jobs` as for Spectrometer::writeRecords(). False if it was interrupted, which
/// it is at the end of a day.
bool writeInOrder(Spectrometer::PlainFileOutput &output, const Datastore &store, int jobs, const QString &verb,
                  const Spectrometer::SpectraSource &spectraOf);

} // namespace Batch
