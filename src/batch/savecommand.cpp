#include "batch/savecommand.h"

#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "batch/recordwriting.h"
#include "batch/savetargets.h"
#include "batch/stagedoutput.h"
#include "datafiles/reading/datafinder.h"
#include "util/folders.h"

#include <memory>

namespace Batch {

namespace {

using Spectrometer::PlainFileOutput;

/// Writes into the folder itself, where a later run can continue what this one leaves, or, to replace files, aside.
Outcome write(const SaveOptions &options, const FolderRead &read, const SpectraByMode &spectra,
              const QStringList &targets, const MessageCollector &messages)
{
    PlainFileOutput::Settings settings = outputSettings(options, *read.reader, spectra);
    if (options.append)
        settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    Outcome outcome;
    std::unique_ptr<StagedOutput> staged;
    if (options.overwrite) {
        staged = std::make_unique<StagedOutput>(options.outputFolder);
        outcome.outputLost = !staged->isValid();
        if (outcome.outputLost)
            return outcome;
        staged->replace(targets);
        settings.folder = staged->path();
    }
    settings.syncFiles = !staged;
    if (!options.append && !options.overwrite) // another program may make one since the look at the targets
        settings.refusalOfExisting = refusalOfExisting();
    const QStringList newFolders = missingFolders(options.outputFolder);
    PlainFileOutput output(settings);
    outcome.interrupted =
        !writeInOrder(output, *read.reader->datastore(), options.read.jobs, QStringLiteral("Writing"),
                      [](const Record &record) -> const SpectMath::SpectrumPointerList & { return record.spectra; });
    const auto counts = staged ? moveOut(*staged, options.outputFolder, output, outcome) : output.counts();
    if (!staged && counts.written + counts.held > 0)
        outcome.outputLost = !bringNamesToDisk(options.outputFolder, newFolders);
    Spectrometer::warnOfSpectraWithoutMode(*read.reader->datastore());
    outcome.tellWriting(counts, options.outputFolder, read, messages);
    return outcome;
}

Outcome save(const SaveOptions &options, const MessageCollector &messages)
{
    const QStringList inputs = matchingFiles(options.read);
    if (inputs.isEmpty())
        return nothing(nothingMatchedText(options.read.folder));
    QString reason = unusableFolder(options.outputFolder);
    if (reason.isEmpty())
        reason = refusal(options, inputs, expectedTargets(options, inputs));
    if (!reason.isEmpty())
        return refused(reason);
    reason =
        options.overwrite ? StagedOutput::obstacleTo(options.outputFolder) : unwritableFolder(options.outputFolder);
    if (!reason.isEmpty())
        return outputLost(reason);

    const FolderRead read = readFolder(options.read, inputs, options.outputVariant);
    if (read.interrupted)
        return stopped();
    if (!read.hasRecords())
        return nothing(QStringLiteral("Nothing found"));
    // Rows may begin on other days, and belong to other modes, than the names of their files tell.
    const SpectraByMode spectra = spectraByMode(*read.reader);
    const QStringList targets = targetsOf(options, *read.reader, spectra);
    reason = refusal(options, inputs, targets);
    return reason.isEmpty() ? write(options, read, spectra, targets, messages) : refused(reason);
}

} // namespace

int runSave(const SaveOptions &options)
{
    const MessageCollector messages(true);
    return save(options, messages).exitStatus();
}

} // namespace Batch
