#include "terminal/completion.h"

#include "terminal/optionnames.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace Terminal {

namespace {

/// What follows an option, as an argument of compgen; empty for a word that the user must know.
std::string valueWords(const CLI::Option &option)
{
    const std::vector<std::string> choices = choicesOf(option);
    if (!choices.empty())
        return "-W '" + CLI::detail::join(choices, " ") + "'";
    const std::string type = option.get_type_name();
    if (type == "FOLDER")
        return "-d";
    return type == "FILE" || type == "PATH" ? "-f" : "";
}

/// Lines of a case over the word before the one at hand, of the options that take one.
std::string valueCases(const CLI::App &app, const std::string &indent)
{
    std::string lines;
    for (const CLI::Option *option : optionsOf(app)) {
        if (option->get_type_size() == 0)
            continue; // a flag
        const std::string words = valueWords(*option);
        lines.append(indent).append(CLI::detail::join(namesOf(*option), "|"));
        lines.append(") value=yes how=(").append(words).append(") ;;\n");
    }
    return lines;
}

std::string optionWords(const CLI::App &app)
{
    std::string words;
    for (const CLI::Option *option : optionsOf(app))
        for (const std::string &name : namesOf(*option))
            words += (words.empty() ? "" : " ") + name;
    return words;
}

/// The branch for the words of a command, or of a program without commands.
std::string branch(const CLI::App &app, const std::string &indent)
{
    return indent + "words='" + optionWords(app) + "'\n" + indent + "case $previous in\n" +
           valueCases(app, indent + "    ") + indent + "esac\n";
}

std::string functionName(const CLI::App &app)
{
    std::string name = '_' + app.get_name();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

} // namespace

std::string bashCompletion(const CLI::App &app)
{
    const std::string name = functionName(app);
    std::string commands;
    for (const CLI::App *command : commandsOf(app))
        commands += (commands.empty() ? "" : " ") + command->get_name();

    std::string script = "# Completion of " + app.get_name() + " for bash, made from the program's own options.\n" +
                         name +
                         "()\n{\n"
                         "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
                         "    local words= value= how=(-d)\n";
    if (commands.empty()) {
        script += branch(app, "    ");
    } else {
        script += "    case $COMP_CWORD:${COMP_WORDS[1]} in\n"
                  "        1:*) words='" +
                  commands + ' ' + optionWords(app) + "' how=() ;;\n";
        for (const CLI::App *command : commandsOf(app))
            script +=
                "        *:" + command->get_name() + ")\n" + branch(*command, "            ") + "            ;;\n";
        script += "    esac\n";
    }
    script += "    COMPREPLY=()\n"
              "    if [ -z \"$value\" ] && [[ $current == -* || ${#how[@]} -eq 0 ]]; then\n"
              "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
              "    elif [ ${#how[@]} -gt 0 ]; then\n"
              "        [[ ${how[0]} == -W ]] || compopt -o filenames 2>/dev/null\n"
              "        mapfile -t COMPREPLY < <(compgen \"${how[@]}\" -- \"$current\")\n"
              "    fi\n"
              "}\n"
              "complete -F " +
              name + ' ' + app.get_name() + '\n';
    return script;
}

} // namespace Terminal
