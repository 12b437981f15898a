#include "batch/savecommand.h"

#include "batch/exitstatus.h"
#include "batch/folderread.h"
#include "batch/interrupt.h"
#include "batch/messagecollector.h"
#include "batch/progressline.h"
#include "batch/savetargets.h"
#include "datafiles/datafinder.h"
#include "datafiles/plainfileoutput.h"

#include <QFileInfo>

namespace Batch {

namespace {

using Spectrometer::PlainFileOutput;

constexpr int progressEvery = 1000; // records

PlainFileOutput::Settings outputSettings(const SaveOptions &options, const FileReader &reader)
{
    PlainFileOutput::Settings settings;
    settings.folder = options.outputFolder;
    settings.fileNamePattern = QStringLiteral("%Y%m%d");
    settings.timeFormat = QStringLiteral("%Y-%m-%d %H:%M:%s");
    settings.variants[0].name = options.outputVariant;
    settings.variants[0].records = options.records;
    settings.inversionVars = options.inversionVars;
    settings.metadata = reader.metadata();
    settings.spectra = spectraByMode(reader);
    return settings;
}

/// False if it was interrupted, at the end of a day.
bool writeRecords(PlainFileOutput &output, const Datastore &store, bool records)
{
    QString day;
    for (int i = 0; i < store.size(); ++i) {
        const Record &record = *store.at(i);
        const QString thisDay = dayText(record);
        if (thisDay != day && Interrupt::requested())
            return false;
        day = thisDay;
        output.writeSpectraRow(record);
        if (records)
            output.writeRecordRow(record);
        if (i % progressEvery == 0)
            ProgressLine::show(QStringLiteral("Writing %1, %2 %").arg(day, QString::number(i * 100LL / store.size())));
    }
    return true;
}

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
    if (QFileInfo::exists(options.outputFolder) && !QFileInfo(options.outputFolder).isDir())
        return refuse(QStringLiteral("\"%1\" isn't a folder.").arg(options.outputFolder));
    QString reason = refusal(options, inputs, expectedTargets(options, inputs));
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
    reason = refusal(options, inputs, targetsOf(options, *read.reader));
    if (!reason.isEmpty())
        return refuse(reason);

    PlainFileOutput output(outputSettings(options, *read.reader));
    outcome.interrupted = !writeRecords(output, *read.reader->datastore(), options.records);
    output.closeFiles();
    ProgressLine::clear();
    outcome.outputLost = output.counts().lost > 0;
    outcome.complaints = !messages.isEmpty() || read.ignoredRows();
    tell(QStringLiteral("%1 rows written to \"%2\"")
             .arg(QString::number(output.counts().written), options.outputFolder));
    if (outcome.outputLost)
        tell(QStringLiteral("%1 rows could not be written.").arg(output.counts().lost));
    if (read.ignoredRows())
        tell(QStringLiteral("%1 lines were ignored.").arg(read.reader->statistics().ignoredRows));
    if (outcome.interrupted)
        tell(QStringLiteral("Stopped: later days were not written."));
    return outcome;
}

} // namespace

int runSave(const SaveOptions &options)
{
    const MessageCollector messages(true);
    return exitStatus(save(options, messages));
}

} // namespace Batch
