#pragma once

#include <string>

namespace CLI {
class App;
}

namespace Terminal {

/// The script with which bash completes the program's words: commands, options, fixed choices, and file names where an
/// option's type is called FILE, FOLDER or PATH. Words that stand by their place are folders.
std::string bashCompletion(const CLI::App &app);

} // namespace Terminal
