#pragma once

#include "batch/options.h"
#include "batch/outcome.h"

namespace Batch {

class MessageCollector;

/// Reads a folder and draws its plots into a file; the result is the exit status. Makes an application object of its
/// own: there is none yet. Interrupted it writes nothing.
int runRender(const RenderOptions &options);
/// The same with an application object that is there.
Outcome render(const RenderOptions &options, const MessageCollector &messages);

} // namespace Batch
