#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

namespace HeaderSections {

/// "total electrometers", "electrometer groups" and "electrometer names" of a current-format header. Checks it against
/// the earlier headers of the read and adds its news to the state. Throws FileReaderError and Llama::NodeError;
/// additions before a fault stay. False if any of the three is absent.
bool readElectrometers(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
