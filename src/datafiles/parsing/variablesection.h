#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

#include <QVector>

#include <optional>

namespace HeaderSections {

/// "diagnostic parameters", else "parameters" of a current-format header: the slot in a record's variables for each
/// column. Checks it against the earlier headers of the read and adds its news to the state. Throws
/// FileReaderError and Llama::NodeError; additions before a fault stay.
/// Empty if neither is there.
std::optional<QVector<int>> readVariables(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
