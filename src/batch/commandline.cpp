#include "batch/commandline.h"

#include "batch/outcome.h"
#include "terminal/completion.h"
#include "terminal/manualpage.h"
#include "terminal/versionline.h"
#include "util/timeparse.h"

#include <CLI/CLI.hpp>

#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>

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

/// The name of an operating mode: one line without blanks at its ends.
QString modeOf(const std::string &text)
{
    return textOf(text).simplified();
}

constexpr int leastPictureSide = 100;
constexpr int greatestPictureSide = 16000; ///< twice that is still within the reach of the rasterizer

/// Empty if the text isn't a size that can be drawn.
QSize sizeOf(const std::string &text)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
    const QRegularExpressionMatch match = form.match(QString::fromStdString(text));
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const auto canBeDrawn = [](int side) { return side >= leastPictureSide && side <= greatestPictureSide; };
    return canBeDrawn(size.width()) && canBeDrawn(size.height()) ? size : QSize();
}

/// The words as they stand on the line.
struct Words {
    std::string folder;
    std::string variant;
    std::string from;
    std::string to;
    std::string outputFolder;
    std::string outputVariant;
    std::string outputFile;
    std::string size;
    std::string setupFile;
    std::string scale = "1";
    std::vector<std::string> inverters;
    bool noRecords = false;
    bool records = false;
    bool legacy = false;
    int jobs = std::max(QThread::idealThreadCount(), 1);
    std::string assumedOpmode;
};

void addFolderOptions(CLI::App *command, Words &words)
{
    command->add_option("FOLDER", words.folder, "The data folder")->required();
    CLI::Option *const variant = command->add_option(
        "--variant", words.variant,
        "Averaging variant, such as block; without it, files that name no variant, and the spectra of each");
    CLI::Option *const legacy =
        command->add_flag("--legacy", words.legacy, "Read old-style .sig, .log and .nds files instead");
    legacy->excludes(variant);
    const CLI::Validator name(
        [](const std::string &text) { return modeOf(text).isEmpty() ? "not a name: " + text : std::string(); }, "NAME");
    command->add_option("--assume-opmode", words.assumedOpmode, "Operating mode of old-style records without one")
        ->check(name)
        ->needs(legacy);
    command->add_option("--jobs", words.jobs, "Threads to work with; else one for each processor")
        ->default_str("") // which differs from machine to machine
        ->check(CLI::Range(1, 1024));
}

void addReadOptions(CLI::App *command, Words &words)
{
    const CLI::Validator date(
        [](const std::string &text) { return dateOf(text).isValid() ? std::string() : "not a date: " + text; },
        "YYYY-MM-DD");
    addFolderOptions(command, words);
    command->add_option("--from", words.from, "First day, by the dates in file names")->check(date);
    command->add_option("--to", words.to, "Last day")->check(date);
}

/// The folder to write to, and how.
void addOutputOptions(CLI::App *command, Words &words, SaveOptions &options, const char *variantHelp)
{
    command->add_option("--output", words.outputFolder, "The folder to write to; made if it doesn't exist")
        ->required()
        ->type_name("FOLDER");
    command->add_option("--output-variant", words.outputVariant, variantHelp);
    command->add_flag("--inversion-vars", options.inversionVars, "Write the residuals of the currents beside spectra");
    CLI::Option *const append =
        command->add_flag("--append", options.append, "Continue files that exist, with the rows that they don't hold");
    command->add_flag("--overwrite", options.overwrite, "Replace files that exist, each as a whole")->excludes(append);
}

void addReinvertOptions(CLI::App *command, Words &words, ReinvertOptions &options)
{
    addReadOptions(command, words);
    command
        ->add_option("--inverters", words.inverters,
                     "Inverter files, map files, packs (\"pack.zip/prefix\" takes a part) or folders")
        ->required()
        ->type_name("PATH")
        ->expected(1, 1 << 20)
        ->allow_extra_args();
    addOutputOptions(command, words, options.save,
                     "Variant in the written files' names; else the one read with \"-reinv\" behind it");
    command->add_flag("--records", words.records, "Write full records beside spectra");
    command->add_flag("--only-new", options.onlyNew, "Leave out spectra that were read");
}

void addExportOptions(CLI::App *command, Words &words, ExportOptions &options)
{
    addReadOptions(command, words);
    command->add_option("--setup", words.setupFile, "Export setup file, which tells the columns")
        ->required()
        ->type_name("FILE");
    command->add_option("--output", words.outputFile, "The file to write; else the one that the setup names")
        ->type_name("FILE");
    command->add_flag("--overwrite", options.overwrite, "Replace files that exist");
}

void addRenderOptions(CLI::App *command, Words &words, RenderOptions &options)
{
    const CLI::Validator moment(
        [](const std::string &text) {
            RecordTime time;
            return parseLocalTime(QString::fromStdString(text), 0, &time) ? std::string() : "not a time: " + text;
        },
        "YYYY-MM-DD[ HH:MM:SS]");
    const CLI::Validator size(
        [](const std::string &text) { return sizeOf(text).isEmpty() ? "not a size: " + text : std::string(); }, "WxH");
    addFolderOptions(command, words);
    command->add_option("--output", words.outputFile, "The file to write, by its end as PNG, SVG or PDF")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--size", words.size,
                     "Width and height of the picture, 100 to 16000 each; else as the plots "
                     "need")
        ->check(size);
    command->add_option("--from", words.from, "First day or moment to show, local at the first record shown")
        ->check(moment);
    command->add_option("--to", words.to, "Last day, which is shown whole, or the moment where the picture ends")
        ->check(moment);
    command->add_option("--setup", words.setupFile, "Window setup file whose plots are drawn; else the default ones")
        ->type_name("FILE");
    command->add_option("--scale", words.scale, "2 draws text and lines twice as fine, in twice as many pixels")
        ->capture_default_str()
        ->check(CLI::IsMember({"1", "2"}));
    command->add_flag("--overwrite", options.overwrite, "Replace the file if it exists");
}

ReadOptions folderOptions(const Words &words)
{
    return {textOf(words.folder), textOf(words.variant),       QDate(),   QDate(),
            words.legacy,         modeOf(words.assumedOpmode), words.jobs};
}

void completeRender(const Words &words, RenderOptions &options)
{
    options.read = folderOptions(words);
    options.outputFile = textOf(words.outputFile);
    options.size = sizeOf(words.size);
    options.from = QString::fromStdString(words.from);
    options.to = QString::fromStdString(words.to);
    options.setupFile = textOf(words.setupFile);
    options.scale = words.scale == "2" ? 2 : 1;
    const auto endsIn = [&](const char *suffix) {
        return options.outputFile.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
    };
    if (!endsIn(".png") && !endsIn(".svg") && !endsIn(".pdf"))
        throw CLI::ValidationError("--output", "isn't the name of a PNG, SVG or PDF file");
    if (options.scale != 1 && !endsIn(".png"))
        throw CLI::ValidationError("--scale", "is for PNG files; others can be drawn at any size");
}

ReadOptions readOptions(const Words &words)
{
    ReadOptions options = folderOptions(words);
    options.from = dateOf(words.from);
    options.to = dateOf(words.to);
    return options;
}

void completeOutput(const Words &words, const QString &variant, SaveOptions &options)
{
    options.read = readOptions(words);
    options.outputFolder = textOf(words.outputFolder);
    options.outputVariant = words.outputVariant.empty() ? variant : textOf(words.outputVariant);
    if (options.outputFolder.isEmpty())
        throw CLI::ValidationError("--output", "is empty");
    if (options.outputVariant.isEmpty())
        throw CLI::ValidationError("--output-variant", "must be given where no --variant is read");
}

/// In the order of their numbers.
constexpr const char *exitStatuses[] = {
    "0 all was read",           "1 nothing was found or left to do, or an output could not be written",
    "2 wrong usage or refused", "3 done, but with warnings or errors, or rows were ignored",
    "130 stopped by Ctrl+C",
};

std::string exitStatusText(const char *divider)
{
    std::string text;
    for (const char *status : exitStatuses)
        text += (text.empty() ? "" : divider) + std::string(status);
    return text + '.';
}

} // namespace

/// What the options write to, and the commands that have them.
struct CommandLineParser::State {
    explicit State(Pictures pictures);

    CommandLine take();

    Words words;
    CommandLine result;
    CLI::App app{"Reads data folders of mobility spectrometers without a window.", "morvantide-batch"};
    CLI::App *summary;
    CLI::App *save;
    CLI::App *reinvert;
    CLI::App *exporting;
    CLI::App *render = nullptr;
};

CommandLineParser::State::State(Pictures pictures)
{
    app.set_version_flag("--version", versionLine(app.get_name()));
    app.require_subcommand(1);
    app.footer("Exit status:\n  " + exitStatusText("\n  "));

    summary = app.add_subcommand("summary", "Tells what a data folder holds");
    addReadOptions(summary, words);
    summary->add_flag("--json", result.summary.json, "As a JSON object");
    summary->add_flag("--quick", result.summary.quick, "Of the files' names and headers alone");

    save = app.add_subcommand("save", "Reads day files and writes them anew");
    addReadOptions(save, words);
    addOutputOptions(save, words, result.save, "Variant in the written files' names; else the one read");
    save->add_flag("--no-records", words.noRecords, "Write spectra alone");

    reinvert = app.add_subcommand("reinvert", "Inverts the records anew and writes their spectra");
    addReinvertOptions(reinvert, words, result.reinvert);

    exporting = app.add_subcommand("export", "Writes a table of chosen values, a line for each record");
    addExportOptions(exporting, words, result.exported);

    if (pictures == Pictures::Present) {
        render = app.add_subcommand("render", "Draws the plots of the window as a picture; needs no display");
        addRenderOptions(render, words, result.render);
    }
}

/// The choices of the words that were parsed. Throws CLI::ParseError where they don't fit together.
CommandLine CommandLineParser::State::take()
{
    if (words.folder.empty())
        throw CLI::ValidationError("FOLDER", "is empty");
    if (render && render->parsed()) {
        completeRender(words, result.render);
        result.command = CommandLine::Render;
        return result;
    }
    const ReadOptions read = result.summary.read = readOptions(words);
    if (read.from.isValid() && read.to.isValid() && read.to < read.from)
        throw CLI::ValidationError("--to", "lies before --from");
    if (save->parsed()) {
        result.save.records = !words.noRecords;
        completeOutput(words, read.variant, result.save);
    } else if (reinvert->parsed()) {
        result.reinvert.save.records = words.records;
        for (const std::string &path : words.inverters)
            result.reinvert.inverters << textOf(path);
        completeOutput(words, read.variant.isEmpty() ? QString() : read.variant + QStringLiteral("-reinv"),
                       result.reinvert.save);
    } else if (exporting->parsed()) {
        result.exported.read = read;
        result.exported.setupFile = textOf(words.setupFile);
        result.exported.outputFile = textOf(words.outputFile);
    }
    result.command = save->parsed()        ? CommandLine::Save
                     : reinvert->parsed()  ? CommandLine::Reinvert
                     : exporting->parsed() ? CommandLine::Export
                                           : CommandLine::Summary;
    return result;
}

CommandLineParser::CommandLineParser(Pictures pictures) : m_state(std::make_unique<State>(pictures)) {}

CommandLineParser::~CommandLineParser() = default;

CommandLine CommandLineParser::parse(int argc, const char *const *argv)
{
    CLI::App &app = m_state->app;
    try {
        app.parse(argc, argv);
        return m_state->take();
    } catch (const CLI::ParseError &error) {
        CommandLine nothing;
        nothing.exitStatus = app.exit(error) == 0 ? ExitStatus::Done : ExitStatus::WrongUsage;
        return nothing;
    }
}

std::string CommandLineParser::manualPage() const
{
    return Terminal::manualPage(
        m_state->app, {{"EXIT STATUS", exitStatusText("\n\n")},
                       {"SEE ALSO", "morvantide(1), morvantide-demo(1)\n\nThe user guide of Morvantide tells of each "
                                    "command in full."}});
}

std::string CommandLineParser::bashCompletion() const
{
    return Terminal::bashCompletion(m_state->app);
}

} // namespace Batch
