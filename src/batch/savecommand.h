#pragma once

#include "batch/options.h"

namespace Batch {

/// Reads a folder and writes its records and spectra as day files; the result is the exit status. Interrupted while
/// reading it writes nothing, interrupted while writing it ends behind a whole day.
int runSave(const SaveOptions &options);

} // namespace Batch
