#include "terminal/manualpage.h"

#include "terminal/optionnames.h"
#include "util/buildinfo.h"

#include <CLI/CLI.hpp>

#include <cctype>

namespace Terminal {

namespace {

/// Text as roff shows it literally.
std::string literal(const std::string &text)
{
    std::string roff;
    for (const char c : text) {
        const bool startsLine = roff.empty() || roff.back() == '\n';
        if (startsLine && (c == '.' || c == '\''))
            roff += "\\&"; // else it would be a request
        if (c == '\\')
            roff += "\\(rs";
        else if (c == '-')
            roff += "\\-"; // a hyphen that can be searched and copied
        else
            roff += c;
    }
    return roff;
}

std::string bold(const std::string &text)
{
    return "\\fB" + literal(text) + "\\fR";
}

std::string paragraphs(const std::string &text)
{
    std::string roff;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find("\n\n", begin)) != std::string::npos; begin = end + 2)
        roff += literal(text.substr(begin, end - begin)) + "\n.PP\n";
    return roff + literal(text.substr(begin)) + '\n';
}

/// The form of a description behind the name of a page: no capital at its begin, no stop at its end.
std::string asNamePart(std::string text)
{
    text = text.substr(0, text.find("\n\n"));
    if (!text.empty())
        text[0] = char(std::tolower(static_cast<unsigned char>(text[0])));
    if (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

std::string item(const std::string &head, const std::string &text)
{
    return ".TP\n" + head + '\n' + paragraphs(text);
}

std::string optionItem(const CLI::Option &option)
{
    std::string head;
    for (const std::string &name : namesOf(option))
        head += (head.empty() ? "" : ", ") + bold(name);
    return item(head + literal(CLI::Formatter().make_option_opts(&option)), option.get_description());
}

std::string synopsis(const CLI::App &app, const std::string &words)
{
    std::string line = bold(words);
    if (!commandsOf(app).empty())
        line += " \\fICOMMAND\\fR";
    for (const CLI::Option *word : positionalsOf(app)) {
        const std::string name = "\\fI" + literal(word->get_name(true)) + "\\fR";
        line += word->get_required() ? ' ' + name : " [" + name + ']';
    }
    return line + " [\\fIoption\\fR...]\n";
}

std::string listOf(const CLI::App &app)
{
    std::string roff;
    for (const CLI::Option *word : positionalsOf(app))
        roff += item("\\fI" + literal(word->get_name(true)) + "\\fR", word->get_description());
    for (const CLI::Option *option : optionsOf(app))
        roff += optionItem(*option);
    return roff;
}

} // namespace

std::string manualPage(const CLI::App &app, const std::vector<ManualSection> &sections)
{
    const std::string day = BuildInfo::version().toStdString();
    const std::string date = day.substr(0, 4) + '-' + day.substr(4, 2) + '-' + day.substr(6);
    std::string title = app.get_name();
    for (char &c : title)
        c = char(std::toupper(static_cast<unsigned char>(c)));

    std::string roff = ".TH " + title + " 1 " + date + " \"Morvantide " + day + "\" \"User Commands\"\n.nh\n.ad l\n";
    roff += ".SH NAME\n" + app.get_name() + " \\- " + literal(asNamePart(app.get_description())) + '\n';
    roff += ".SH SYNOPSIS\n" + synopsis(app, app.get_name());
    roff += ".SH DESCRIPTION\n" + paragraphs(app.get_description());
    roff += ".SH OPTIONS\n" + listOf(app);
    if (!commandsOf(app).empty())
        roff += ".SH COMMANDS\n";
    for (const CLI::App *command : commandsOf(app)) {
        roff += ".SS " + literal(command->get_name()) + '\n';
        roff += synopsis(*command, app.get_name() + ' ' + command->get_name()) + ".PP\n";
        roff += paragraphs(command->get_description()) + listOf(*command);
    }
    for (const ManualSection &section : sections)
        roff += ".SH " + literal(section.title) + '\n' + paragraphs(section.text);
    return roff;
}

} // namespace Terminal
