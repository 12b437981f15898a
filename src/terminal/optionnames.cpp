#include "terminal/optionnames.h"

#include <CLI/CLI.hpp>

namespace Terminal {

std::vector<const CLI::App *> commandsOf(const CLI::App &app)
{
    return app.get_subcommands([](const CLI::App *command) { return !command->get_name().empty(); });
}

std::vector<const CLI::Option *> optionsOf(const CLI::App &app)
{
    return app.get_options([](const CLI::Option *option) { return option->nonpositional(); });
}

std::vector<const CLI::Option *> positionalsOf(const CLI::App &app)
{
    return app.get_options([](const CLI::Option *option) { return option->get_positional(); });
}

std::vector<std::string> namesOf(const CLI::Option &option)
{
    std::vector<std::string> names;
    for (const std::string &name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string &name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

std::vector<std::string> choicesOf(const CLI::Option &option)
{
    const std::string type = option.get_type_name(); // such as "TEXT:{1,2}"
    const auto begin = type.find('{');
    const auto end = type.find('}', begin);
    if (begin == std::string::npos || end == std::string::npos)
        return {};
    return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

} // namespace Terminal
