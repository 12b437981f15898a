#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

#include <QVector>

#include <optional>

namespace HeaderSections {

/// A flag and the level above which it is raised.
struct FlagLevel {
    std::shared_ptr<Spectrometer::RecordFlag> flag;
    double threshold = 0;
};
/// The section "flags" of a current-format header. Checks it against the earlier headers of the read and adds its news
/// to the state. Throws FileReaderError and Llama::NodeError; additions before a fault stay. Empty if it isn't there.
std::optional<QVector<FlagLevel>> readFlagLevels(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
