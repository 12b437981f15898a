#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Terminal {

/// A part of a manual page beyond what the command line's description holds.
struct ManualSection {
    std::string title; ///< such as "FILES"
    std::string text;  ///< paragraphs, divided by empty lines
};

/// The manual page of a program, in roff for section 1: from the same description as its help. Commands of the program
/// have parts of their own. `sections` stand behind the options.
std::string manualPage(const CLI::App &app, const std::vector<ManualSection> &sections);

} // namespace Terminal
