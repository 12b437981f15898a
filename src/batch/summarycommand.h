#pragma once

#include "batch/options.h"

namespace Batch {

/// Reads a folder and prints its contents; the result is the exit status. An interrupted read tells of the records
/// until then.
int runSummary(const SummaryOptions &options);

} // namespace Batch
