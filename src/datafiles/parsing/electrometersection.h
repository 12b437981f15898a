#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

namespace HeaderSections {

/// "total electrometers", "electrometer groups" and "electrometer names" of a current-format header. Checks it against
/// what the read has seen so far and adds what is new to the state. Throws FileReaderError and Llama::NodeError; what
/// was added before a fault stays. False if any of the three is absent.
bool readElectrometers(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
