#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

namespace HeaderSections {

/// The section "opmodes" of a current-format header. Checks it against the earlier headers of the read and adds its
/// news to the state. Throws FileReaderError and Llama::NodeError; additions before a fault stay. True if it is there.
bool readOpmodes(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
