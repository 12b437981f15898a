#pragma once

#include "batch/options.h"

/// The command line of morvantide-batch.
namespace Batch {

struct CommandLine {
    enum Command { None, Summary, Save, Reinvert, Export, Render };
    Command command = None; ///< None: nothing is left to do but to end with `exitStatus`
    int exitStatus = 0;
    SummaryOptions summary;
    SaveOptions save;
    ReinvertOptions reinvert;
    ExportOptions exported;
    RenderOptions render;
};

/// Whether the program was built with drawing; without it there is no command for pictures.
enum class Pictures { Absent, Present };

/// Prints help, the version, or the fault of the words, where one of these is due. Needs no application object, but
/// the user's locale.
CommandLine parseCommandLine(int argc, const char *const *argv, Pictures pictures);

} // namespace Batch
