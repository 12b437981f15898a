#pragma once

#include "gui/common/vargridlayout.h"
#include "llama/nodes.h"
#include "records/recordmetadata.h"

/// Reads the layouts of the variable grid from "var_grid_layouts.yaml".
namespace VarGridParser {

constexpr int mostLayouts = 100, mostRows = 1000, mostColumns = 100, mostVariables = 50; ///< of a cell

/// The layouts of a file whose variables the metadata know. Throws Llama::NodeError at the first error, which names its
/// place.
std::vector<VarGridLayout> parse(const Llama::Node &file, const Spectrometer::RecordMetadata &metadata);

/// The file of the first of these folders that has one, read and parsed. None where no folder has it, and none where it
/// has an error, which goes to the log.
std::vector<VarGridLayout> load(const QStringList &folders, const Spectrometer::RecordMetadata &metadata);

} // namespace VarGridParser
