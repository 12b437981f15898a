#include "batch/savecommand.h"

#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "batch/recordwriting.h"
#include "batch/savetargets.h"
#include "datafiles/reading/datafinder.h"
#include "terminal/progressline.h"

namespace Batch {

namespace {

using Spectrometer::PlainFileOutput;

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
    reason = unwritableFolder(options.outputFolder);
    if (!reason.isEmpty())
        return outputLost(reason);

    const FolderRead read = readFolder(options.read, inputs, options.outputVariant);
    if (read.interrupted)
        return stopped();
    if (!read.hasRecords())
        return nothing(QStringLiteral("Nothing found"));
    // Rows may begin on other days, and belong to other modes, than the names of their files tell.
    const SpectraByMode spectra = spectraByMode(*read.reader);
    reason = refusal(options, inputs, targetsOf(options, *read.reader, spectra));
    if (!reason.isEmpty())
        return refused(reason);

    PlainFileOutput output(outputSettings(options, *read.reader, spectra));
    Outcome outcome;
    outcome.interrupted =
        !writeInOrder(output, *read.reader->datastore(), options.read.jobs, QStringLiteral("Writing"),
                      [](const Record &record) -> const SpectMath::SpectrumPointerList & { return record.spectra; });
    output.closeFiles();
    ProgressLine::clear();
    Spectrometer::warnOfSpectraWithoutMode(*read.reader->datastore());
    outcome.tellWriting(output.counts(), options.outputFolder, read, messages);
    return outcome;
}

} // namespace

int runSave(const SaveOptions &options)
{
    const MessageCollector messages(true);
    return save(options, messages).exitStatus();
}

} // namespace Batch
