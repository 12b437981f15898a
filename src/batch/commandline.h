#pragma once

#include "batch/options.h"

#include <memory>
#include <string>

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

/// The command line and its description in words. Needs no application object, but the user's locale.
class CommandLineParser {
public:
    explicit CommandLineParser(Pictures pictures);
    ~CommandLineParser();

    /// Prints help, the version, or the fault of the words, where one of these is due. To be called once.
    CommandLine parse(int argc, const char *const *argv);

    /// In roff.
    std::string manualPage() const;
    std::string bashCompletion() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Batch
