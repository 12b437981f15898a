#pragma once

#include "batch/options.h"

namespace Batch {

/// Reads a folder, inverts all records, and writes the spectra as day files; the result is the exit status. Spectra are
/// inverted while they are written and not kept. Interrupted while reading it writes nothing, later it ends behind a
/// whole day.
int runReinvert(const ReinvertOptions &options);

} // namespace Batch
