#pragma once

#include "batch/options.h"

namespace Batch {

/// Reads a folder and writes a table of its records, as the window does; the result is the exit status. Interrupted, it
/// writes nothing.
int runExport(const ExportOptions &options);

} // namespace Batch
