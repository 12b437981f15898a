#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

namespace HeaderSections {

/// "instrument configuration" of a current-format header: that of the first header which has it as a map becomes the
/// metadata's, without nulls. Throws FileReaderError when it is too large.
void readInstrumentSettings(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
