#include "batch/savecommand.h"

#include "batch/exitstatus.h"
#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "batch/progressline.h"
#include "batch/recordwriting.h"
#include "batch/savetargets.h"
#include "batch/writingend.h"
#include "datafiles/datafinder.h"

namespace Batch {

namespace {

using Spectrometer::PlainFileOutput;

Outcome save(const SaveOptions &options, const MessageCollector &messages)
{
    Outcome outcome;
    const auto refuse = [&outcome](const QString &reason) {
        outcome.refused = true;
        tell(reason);
        return outcome;
    };
    const QStringList inputs = matchingFiles(options.read);
    if (inputs.isEmpty()) {
        outcome.nothingFound = true;
        tell(nothingMatchedText(options.read.folder));
        return outcome;
    }
    QString reason = unusableFolder(options.outputFolder);
    if (reason.isEmpty())
        reason = refusal(options, inputs, expectedTargets(options, inputs));
    if (!reason.isEmpty())
        return refuse(reason);

    const FolderRead read = readFolder(options.read, inputs, options.outputVariant);
    outcome.interrupted = read.interrupted;
    outcome.nothingFound = !read.hasRecords();
    if (outcome.nothingFound)
        tell(QStringLiteral("Nothing found"));
    if (outcome.interrupted)
        tell(QStringLiteral("Stopped: nothing was written."));
    if (outcome.interrupted || outcome.nothingFound)
        return outcome;
    // Rows may begin on other days, and belong to other modes, than the names of their files tell.
    const SpectraByMode spectra = spectraByMode(*read.reader);
    reason = refusal(options, inputs, targetsOf(options, *read.reader, spectra));
    if (!reason.isEmpty())
        return refuse(reason);

    PlainFileOutput output(outputSettings(options, *read.reader, spectra));
    outcome.interrupted =
        !writeInOrder(output, *read.reader->datastore(), QStringLiteral("Writing"),
                      [](const Record &record) -> const SpectMath::SpectrumPointerList & { return record.spectra; });
    output.closeFiles();
    ProgressLine::clear();
    tellWriting(output.counts(), options.outputFolder, read, messages, &outcome);
    return outcome;
}

} // namespace

int runSave(const SaveOptions &options)
{
    const MessageCollector messages(true);
    return exitStatus(save(options, messages));
}

} // namespace Batch
