#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

namespace HeaderSections {

/// The section "opmodes" of a current-format header. Checks it against what the read has seen so far and adds what is
/// new to the state. Throws FileReaderError and Llama::NodeError; what was added before a fault stays. True if it is
/// there.
bool readOpmodes(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
