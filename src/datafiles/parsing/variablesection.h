#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

#include <QVector>

#include <optional>

namespace HeaderSections {

/// "diagnostic parameters", else "parameters" of a current-format header: the slot in a record's variables for each
/// column. Checks it against what the read has seen so far and adds what is new to the state. Throws
/// FileReaderError and Llama::NodeError; what was added before a fault stays.
/// Empty if neither is there.
std::optional<QVector<int>> readVariables(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
