#pragma once

#include "batch/commandline.h"

namespace Batch {

/// Reads a folder and prints what it holds; the result is the exit status. An interrupted read tells of what was read
/// until then.
int runSummary(const SummaryOptions &options);

} // namespace Batch
