#include "app/commandline.h"

#include "terminal/completion.h"
#include "terminal/manualpage.h"
#include "terminal/versionline.h"

#include <CLI/CLI.hpp>

namespace {

const std::string programName = "morvantide";

/// The description alone: the line is not read by it, for unknown options are no faults here.
std::unique_ptr<CLI::App> description()
{
    auto app = std::make_unique<CLI::App>("Viewer and analyser for data of aerosol and ion mobility spectrometers.",
                                          programName);
    app->add_option("FOLDER", "The data folder to offer in the dialog that opens data");
    app->add_option("VARIANT", "The averaging variant to offer with it, such as block");
    app->add_option("--recover", "Take the command line from this recovery file; given by the program itself when it "
                                 "starts again after a crash")
        ->type_name("FILE");
    app->set_version_flag("--version", versionLine(programName));
    app->footer("Options that are not known are ignored.");
    return app;
}

} // namespace

CommandLine::RecoverOption CommandLine::recoverOption(const QStringList &arguments)
{
    const int index = arguments.indexOf(QStringLiteral("--recover"));
    if (index < 0)
        return {};
    return {true, arguments.value(index + 1)};
}

QStringList CommandLine::positionalArguments(const QStringList &arguments)
{
    QStringList words;
    for (const QString &argument : arguments.mid(1)) {
        if (!argument.startsWith(QLatin1Char('-')))
            words << argument;
    }
    return words;
}

QString CommandLine::answerTo(const QStringList &arguments)
{
    if (arguments.size() != 2)
        return QString();
    if (arguments[1] == QLatin1String("--version"))
        return QString::fromStdString(versionLine(programName) + '\n');
    if (arguments[1] == QLatin1String("--help") || arguments[1] == QLatin1String("-h"))
        return QString::fromStdString(description()->help());
    return QString();
}

std::string CommandLine::manualPage()
{
    const std::vector<Terminal::ManualSection> sections = {
        {"FILES",
         "~/.config/morvantide/morvantide.conf: the user's settings, where the program is installed below /usr\n\n"
         "/usr/share/morvantide: layouts and grids of variables for everybody, and the user guide\n\n"
         "crash_reports: reports of crashes, below the folder that the program was started in"},
        {"SEE ALSO", "morvantide-batch(1), morvantide-demo(1)\n\nThe user guide, which F1 opens."},
    };
    return Terminal::manualPage(*description(), sections);
}

std::string CommandLine::bashCompletion()
{
    return Terminal::bashCompletion(*description());
}
