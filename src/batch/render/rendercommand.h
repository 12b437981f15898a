#pragma once

#include "batch/commandline.h"

namespace Batch {

/// Reads a folder and draws its plots into a file; the result is the exit status. Makes an application object of its
/// own: there is none yet. Interrupted it writes nothing.
int runRender(const RenderOptions &options);

} // namespace Batch
