#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// What manual pages and completion both take from the description of a command line.
namespace Terminal {

/// The commands that a program offers, in order; none for a program without.
std::vector<const CLI::App *> commandsOf(const CLI::App &app);
/// The options that begin with "-", in order.
std::vector<const CLI::Option *> optionsOf(const CLI::App &app);
/// The words that stand by their place, in order.
std::vector<const CLI::Option *> positionalsOf(const CLI::App &app);
/// An option's names with their dashes, such as "-h" and "--help".
std::vector<std::string> namesOf(const CLI::Option &option);
/// The words that an option with a fixed choice takes; empty for others.
std::vector<std::string> choicesOf(const CLI::Option &option);

} // namespace Terminal
