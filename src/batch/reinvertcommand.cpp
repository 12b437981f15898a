#include "batch/reinvertcommand.h"

#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "batch/recordwriting.h"
#include "batch/savetargets.h"
#include "batch/stagedoutput.h"
#include "datafiles/reading/datafinder.h"
#include "spectra/inverterchoice.h"
#include "spectra/inverterfiles.h"
#include "spectra/orderedinversion.h"

#include <QSet>

namespace Batch {

namespace {

using SpectMath::InverterList;
using SpectMath::InverterPointer;
using Spectrometer::PlainFileOutput;

const Log::Logger &logger()
{
    static const Log::Logger instance(QStringLiteral("inversion"));
    return instance;
}

/// Empty if none could be read. Complaints go to the log.
InverterList readInverters(const QStringList &paths)
{
    QStringList errors;
    InverterList inverters;
    for (const QString &path : paths) {
        const int errorsBefore = errors.size();
        const InverterList some = SpectMath::loadChosenInverters({path}, unitTable(), &errors);
        // Other files are passed over in silence, which suits a folder; here the path itself was named.
        if (some.empty() && errors.size() == errorsBefore)
            errors << QStringLiteral("No inverters in '%1'").arg(path);
        inverters.insert(inverters.end(), some.begin(), some.end());
    }
    SpectMath::tellLoadingErrors(logger(), errors, !inverters.empty());
    return inverters;
}

/// Which spectra go into the files.
struct Selection {
    bool keepRead;
    QSet<QString> newHashes;
    SpectraByMode byMode;

    /// The same hash means the same inversion: the new spectrum takes the place of the old.
    bool keeps(const SpectMath::SpectrumInfo &info) const { return keepRead && !newHashes.contains(info.hash); }
};

Selection select(const FileReader &reader, const InverterList &inverters, bool onlyNew)
{
    Selection selection;
    selection.keepRead = !onlyNew;
    for (const InverterPointer &inverter : inverters)
        selection.newHashes.insert(inverter->info()->hash);
    QVector<SpectMath::SpectrumInfoPointer> kept;
    for (const auto &info : reader.spectrumInfos())
        if (selection.keeps(*info))
            kept << info;
    selection.byMode = Spectrometer::spectraByMode(*reader.datastore(), *reader.metadata(), kept);
    for (const InverterPointer &inverter : inverters)
        selection.byMode[inverter->info()->opmode] << inverter->info();
    return selection;
}

/// Puts a record's spectra together: those read that stay, and its new ones.
class MergedSpectra {
public:
    MergedSpectra(const FileReader &reader, const InverterList &inverters, const Selection &selection, int jobs)
        : m_selection(selection), m_inversion(reader.datastore()->records(), inverters, *reader.metadata(), jobs)
    {
    }

    /// Called once for each record, in order.
    const SpectMath::SpectrumPointerList &next(const Record &record)
    {
        SpectMath::SpectrumRecordPointer result;
        m_inversion.next(result, [this](int level, const QString &text) { m_log.log(level, text); });
        m_spectra.clear();
        for (const auto &spectrum : record.spectra)
            if (spectrum && spectrum->info && m_selection.keeps(*spectrum->info))
                m_spectra.push_back(spectrum);
        if (result)
            m_spectra.insert(m_spectra.end(), result->spectra.begin(), result->spectra.end());
        return m_spectra;
    }

private:
    const Selection &m_selection;
    const Log::Logger m_log{QStringLiteral("inversion")};
    SpectMath::OrderedInversion m_inversion;
    SpectMath::SpectrumPointerList m_spectra;
};

/// False if it was interrupted.
bool invertAndWrite(const ReinvertOptions &options, const FileReader &reader, const InverterList &inverters,
                    const Selection &selection, PlainFileOutput &output)
{
    MergedSpectra spectra(reader, inverters, selection, options.save.read.jobs);
    return writeInOrder(
        output, *reader.datastore(), options.save.read.jobs, QStringLiteral("Inverting"),
        [&spectra](const Record &record) -> const SpectMath::SpectrumPointerList & { return spectra.next(record); });
}

Outcome reinvert(const ReinvertOptions &options, const MessageCollector &messages)
{
    const SaveOptions &save = options.save;
    const QStringList inputs = matchingFiles(save.read);
    if (inputs.isEmpty())
        return nothing(nothingMatchedText(save.read.folder));
    QString reason = unusableFolder(save.outputFolder);
    if (reason.isEmpty() && !options.onlyNew)
        reason = refusal(save, inputs, expectedTargets(save, inputs));
    if (!reason.isEmpty())
        return refused(reason);
    reason = StagedOutput::obstacleTo(save.outputFolder);
    if (!reason.isEmpty())
        return outputLost(reason);
    const InverterList loaded = readInverters(options.inverters);
    if (loaded.empty())
        return nothing(QStringLiteral("No inverters!"));

    const FolderRead read = readFolder(save.read, inputs, save.outputVariant);
    if (read.interrupted)
        return stopped();
    if (!read.hasRecords())
        return nothing(QStringLiteral("Nothing found"));
    const InverterList inverters =
        SpectMath::chooseInverters(loaded, read.reader->datastore()->records(), *read.reader->metadata()).used;
    if (inverters.empty())
        return nothing(QStringLiteral("No inverter fits a mode of the records."));
    const Selection selection = select(*read.reader, inverters, options.onlyNew);
    const QStringList targets = targetsOf(save, *read.reader, selection.byMode);
    reason = refusal(save, inputs, targets);
    if (!reason.isEmpty())
        return refused(reason);

    StagedOutput staged(save.outputFolder);
    Outcome outcome;
    outcome.outputLost = !staged.isValid() || (save.append && !staged.bringIn(targets));
    if (outcome.outputLost)
        return outcome;
    if (save.overwrite)
        staged.replace(targets);
    PlainFileOutput::Settings settings = outputSettings(save, *read.reader, selection.byMode);
    settings.folder = staged.path();
    if (save.append) // spectra of other inverters stand under other headers
        settings.passOver = PlainFileOutput::PassOver::RowsOfTheSameHeader;
    PlainFileOutput output(settings);
    outcome.interrupted = !invertAndWrite(options, *read.reader, inverters, selection, output);
    const PlainFileOutput::RowCounts counts = moveOut(staged, save.outputFolder, output, outcome);
    if (!options.onlyNew)
        Spectrometer::warnOfSpectraWithoutMode(*read.reader->datastore());
    outcome.tellWriting(counts, save.outputFolder, read, messages);
    return outcome;
}

} // namespace

int runReinvert(const ReinvertOptions &options)
{
    const MessageCollector messages(true);
    return reinvert(options, messages).exitStatus();
}

} // namespace Batch
