#include "batch/exportcommand.h"

#include "batch/folderread.h"
#include "batch/interrupt.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "dataexport/dataexporter.h"
#include "dataexport/exporttargets.h"
#include "datafiles/reading/datafinder.h"
#include "terminal/progressline.h"

#include <QDir>
#include <QFileInfo>

namespace Batch {

namespace {

using DataExport::DataExporter;
using DataExport::ExportSetup;
using DataExport::ExportTable;

/// The setup, with an absolute output file. Throws DataExport::SetupError.
ExportSetup setupOf(const ExportOptions &options)
{
    ExportSetup setup = DataExport::loadExportSetup(options.setupFile);
    QString &file = setup.general.outputFile;
    if (!options.outputFile.isEmpty())
        file = QDir().absoluteFilePath(options.outputFile);
    else if (!file.isEmpty())
        file = QFileInfo(options.setupFile).absoluteDir().absoluteFilePath(file);
    return setup;
}

/// Why these files may not be written, in words; null if they may.
QString refusal(const ExportOptions &options, const QStringList &inputs, const QStringList &targets)
{
    QStringList files{options.setupFile};
    for (const QString &input : inputs)
        files << QDir(options.read.folder).filePath(input);
    const QString reason = DataExport::refusalOf(targets, files);
    const QStringList existing = DataExport::existingOf(targets);
    if (!reason.isNull() || options.overwrite || existing.isEmpty())
        return reason;
    return QStringLiteral("\"%1\" exists. Use --overwrite to replace files.").arg(existing.first());
}

/// What of it can be told before anything is read.
QString earlyRefusal(const ExportOptions &options, const DataExport::GeneralSettings &general,
                     const QStringList &inputs)
{
    const QString fault = DataExport::ExportNaming(general, nullptr).fault();
    if (!fault.isNull())
        return fault;
    const QString folder = unusableFolder(QFileInfo(general.outputFile).path());
    if (!folder.isEmpty() || general.addDate || general.addOpmode)
        return folder;
    return refusal(options, inputs, {general.outputFile});
}

DataExport::ExportData dataOf(const ExportOptions &options, const QStringList &inputs, const FolderRead &read)
{
    DataExport::ExportData data;
    data.metadata = read.reader->metadata();
    data.infos = read.reader->spectrumInfos();
    data.folder = QDir(options.read.folder).absolutePath();
    data.files = inputs;
    data.first = *read.reader->datastore()->records().front();
    data.last = *read.reader->datastore()->records().back();
    return data;
}

/// False if it was interrupted.
bool addRecords(DataExporter &exporter, const Datastore &store, int jobs)
{
    const bool isComplete = exporter.addRecords(store.records(), jobs, [&store](int done) {
        ProgressLine::show(QStringLiteral("Exporting %1 %").arg(done * 100LL / store.size()),
                           done / double(store.size()));
        return !Interrupt::requested();
    });
    ProgressLine::clear();
    return isComplete;
}

void tellEnd(Outcome &outcome, const DataExporter::Result &result, const QStringList &targets)
{
    tell(DataExport::resultText(result, targets));
    if (result.lost > 0)
        tell(DataExport::lossText(result));
    outcome.outputLost = !result.isComplete || !result.lasts || result.lost > 0;
}

Outcome write(const ExportOptions &options, const ExportSetup &setup, const QStringList &inputs, const FolderRead &read,
              const MessageCollector &messages)
{
    const Datastore &store = *read.reader->datastore();
    ExportTable table(setup, dataOf(options, inputs, read));
    DataExport::logErrors(table.errors());
    if (table.lacksSpectra())
        return nothing(QStringLiteral("Nothing to export: none of the setup's spectra was read."));
    const QStringList targets =
        DataExport::exportTargets(setup.general, table, read.reader->metadata(), store.records());
    if (targets.isEmpty())
        return nothing(QStringLiteral("Nothing to export: no record is of the setup's modes."));
    const QString reason = refusal(options, inputs, targets);
    if (!reason.isNull())
        return refused(reason);

    const auto existing = options.overwrite ? ExistingFile::Replaced : ExistingFile::Kept;
    DataExporter exporter(setup, table, read.reader->metadata(), existing);
    if (!addRecords(exporter, store, options.read.jobs))
        return stopped();
    Outcome outcome;
    tellEnd(outcome, exporter.finish(), targets);
    outcome.tellReading(read, messages);
    return outcome;
}

Outcome exportFolder(const ExportOptions &options, const MessageCollector &messages)
{
    const QStringList inputs = matchingFiles(options.read);
    if (inputs.isEmpty())
        return nothing(nothingMatchedText(options.read.folder));
    ExportSetup setup;
    try {
        setup = setupOf(options);
    } catch (const DataExport::SetupError &error) {
        return refused(
            QStringLiteral("The export setup file \"%1\" can't be used: %2").arg(options.setupFile, error.message()));
    }
    QString reason = earlyRefusal(options, setup.general, inputs);
    if (!reason.isEmpty())
        return refused(reason);
    reason = unwritableFolder(QFileInfo(setup.general.outputFile).path());
    if (!reason.isEmpty())
        return outputLost(reason);
    DataExport::logErrors(setup.errors);

    const FolderRead read = readFolder(options.read, inputs, options.read.variant);
    if (read.interrupted)
        return stopped();
    if (!read.hasRecords())
        return nothing(QStringLiteral("Nothing found"));
    return write(options, setup, inputs, read, messages);
}

} // namespace

int runExport(const ExportOptions &options)
{
    const MessageCollector messages(true);
    return exportFolder(options, messages).exitStatus();
}

} // namespace Batch
