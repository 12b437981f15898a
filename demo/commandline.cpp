#include "demo/commandline.h"

#include "terminal/completion.h"
#include "terminal/manualpage.h"
#include "terminal/versionline.h"

#include <CLI/CLI.hpp>

namespace Demo {

struct CommandLineParser::State {
    State();

    Options options;
    CLI::App app{"Writes a data folder of a made-up mobility spectrometer, and its inverters, to try Morvantide with.",
                 "morvantide-demo"};
};

CommandLineParser::State::State()
{
    Campaign::Settings &settings = options.settings;
    app.add_option("OUT", options.folder, "The folder to write; made if it doesn't exist, refused if it isn't empty")
        ->required();
    app.add_option("--days", settings.days, "How many days")->capture_default_str()->check(CLI::Range(1, 3650));
    app.add_option("--interval", settings.interval, "Seconds from one record to the next")
        ->capture_default_str()
        ->check(CLI::Range(1, 3600));
    app.add_option("--seed", settings.seed, "Another seed, another campaign")->capture_default_str();
    app.add_flag("--legacy", options.isLegacy,
                 "Write the files of old instruments, .sig, .log and .nds, in place of the others");
    app.set_version_flag("--version", versionLine(app.get_name()));
}

CommandLineParser::CommandLineParser() : m_state(std::make_unique<State>()) {}

CommandLineParser::~CommandLineParser() = default;

std::optional<Options> CommandLineParser::parse(int argc, const char *const *argv, int *exitStatus)
{
    try {
        m_state->app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        *exitStatus = m_state->app.exit(error) == 0 ? 0 : 2;
        return std::nullopt;
    }
    return m_state->options;
}

std::string CommandLineParser::manualPage() const
{
    return Terminal::manualPage(m_state->app, {{"SEE ALSO", "morvantide(1), morvantide-batch(1)"}});
}

std::string CommandLineParser::bashCompletion() const
{
    return Terminal::bashCompletion(m_state->app);
}

} // namespace Demo
