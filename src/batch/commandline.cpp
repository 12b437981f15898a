#include "batch/commandline.h"

#include "batch/exitstatus.h"
#include "util/buildinfo.h"

#include <CLI/CLI.hpp>

#include <QFile>

namespace Batch {

namespace {

QString textOf(const std::string &bytes)
{
    return QFile::decodeName(QByteArray::fromStdString(bytes));
}

QDate dateOf(const std::string &text)
{
    const QString date = QString::fromStdString(text);
    return date.size() == 10 ? QDate::fromString(date, QStringLiteral("yyyy-MM-dd")) : QDate();
}

/// The words as they stand on the line.
struct Words {
    std::string folder;
    std::string variant;
    std::string from;
    std::string to;
    std::string outputFolder;
    std::string outputVariant;
};

void addReadOptions(CLI::App *command, Words &words)
{
    const CLI::Validator date(
        [](const std::string &text) { return dateOf(text).isValid() ? std::string() : "not a date: " + text; },
        "YYYY-MM-DD");
    command->add_option("FOLDER", words.folder, "The data folder")->required();
    command->add_option("--variant", words.variant,
                        "Averaging variant, such as block; without it, files that name no variant");
    command->add_option("--from", words.from, "First day, by the dates in file names")->check(date);
    command->add_option("--to", words.to, "Last day")->check(date);
}

ReadOptions readOptions(const Words &words)
{
    return {textOf(words.folder), textOf(words.variant), dateOf(words.from), dateOf(words.to)};
}

} // namespace

CommandLine parseCommandLine(int argc, const char *const *argv)
{
    CommandLine result;
    Words words;
    CLI::App app("Reads data folders of mobility spectrometers without a window.", "morvantide-batch");
    app.set_version_flag("--version", "morvantide-batch " + BuildInfo::version().toStdString() + " revision " +
                                          BuildInfo::revision().toStdString());
    app.require_subcommand(1);
    app.footer("Exit status: 0 all was read; 1 nothing was found, or an output could not be written; 2 wrong usage or "
               "refused;\n3 done, but with warnings or errors, or rows were ignored; 130 stopped by Ctrl+C.");

    CLI::App *summary = app.add_subcommand("summary", "Tells what a data folder holds");
    addReadOptions(summary, words);
    summary->add_flag("--json", result.summary.json, "As a JSON object");

    CLI::App *save = app.add_subcommand("save", "Reads day files and writes them anew");
    addReadOptions(save, words);
    save->add_option("--output", words.outputFolder, "The folder to write to; made if it doesn't exist")->required();
    save->add_option("--output-variant", words.outputVariant, "Variant in the written files' names; else the one read");
    bool noRecords = false;
    save->add_flag("--no-records", noRecords, "Write spectra alone");
    save->add_flag("--inversion-vars", result.save.inversionVars, "Write the residuals of the currents beside spectra");
    save->add_flag("--append", result.save.append, "Continue files that exist");

    try {
        app.parse(argc, argv);
        result.summary.read = result.save.read = readOptions(words);
        const ReadOptions &read = result.save.read;
        if (read.from.isValid() && read.to.isValid() && read.to < read.from)
            throw CLI::ValidationError("--to", "lies before --from");
        if (read.folder.isEmpty())
            throw CLI::ValidationError("FOLDER", "is empty");
        if (save->parsed()) {
            result.save.records = !noRecords;
            result.save.outputFolder = textOf(words.outputFolder);
            result.save.outputVariant = words.outputVariant.empty() ? read.variant : textOf(words.outputVariant);
            if (result.save.outputFolder.isEmpty())
                throw CLI::ValidationError("--output", "is empty");
            if (result.save.outputVariant.isEmpty())
                throw CLI::ValidationError("--output-variant", "must be given where no --variant is read");
        }
        result.command = save->parsed() ? CommandLine::Save : CommandLine::Summary;
    } catch (const CLI::ParseError &error) {
        result.exitStatus = app.exit(error) == 0 ? ExitStatus::Done : ExitStatus::WrongUsage;
    }
    return result;
}

} // namespace Batch
