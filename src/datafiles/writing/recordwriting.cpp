#include "datafiles/writing/recordwriting.h"

#include "log/logger.h"
#include "util/workteam.h"

#include <QSet>

#include <algorithm>

namespace Spectrometer {

SpectraByMode spectraByMode(const Datastore &store, const RecordMetadata &metadata,
                            const QVector<SpectMath::SpectrumInfoPointer> &infos)
{
    // A description tells its mode by its name alone, which a file need not follow: what the records hold counts too.
    std::vector<QSet<const SpectMath::SpectrumInfo *>> held(std::size_t(metadata.opmodes.size()));
    for (const auto &record : store.records()) {
        if (record->opmode < 0 || record->opmode >= metadata.opmodes.size())
            continue;
        auto &ofMode = held[std::size_t(record->opmode)];
        for (const auto &spectrum : record->spectra)
            if (spectrum && !ofMode.contains(spectrum->info.get()))
                ofMode.insert(spectrum->info.get());
    }
    SpectraByMode modes;
    for (int mode = 0; mode < metadata.opmodes.size(); ++mode) {
        const QString &name = metadata.opmodes.at(mode).name;
        for (const auto &info : infos)
            if ((info->opmode == name || held[std::size_t(mode)].contains(info.get())) && !modes[name].contains(info))
                modes[name].append(info);
    }
    return modes;
}

void warnOfSpectraWithoutMode(const Datastore &store)
{
    std::size_t spectra = 0;
    for (const auto &record : store.records())
        if (record->opmode < 0)
            spectra += record->spectra.size();
    if (spectra > 0)
        Log::Logger(QStringLiteral("filewriter"))
            .log(Log::Warning,
                 QStringLiteral("%1 spectra were written to no file: the operating mode of their records is unknown")
                     .arg(spectra));
}

PlainFileOutput::Settings dayFileSettings(const QString &folder, const QString &variant,
                                          std::shared_ptr<const RecordMetadata> metadata)
{
    PlainFileOutput::Settings settings;
    settings.folder = folder;
    settings.fileNamePattern = QStringLiteral("%Y%m%d");
    settings.timeFormat = QStringLiteral("%Y-%m-%d %H:%M:%s");
    settings.variants[0].name = variant;
    settings.metadata = std::move(metadata);
    return settings;
}

namespace {

// Rows are made in pieces of about that many numbers: some milliseconds of work, and a few hundred kilobytes.
constexpr std::size_t numbersOfPiece = 16'384;
constexpr std::size_t mostRecordsOfPiece = 16;
constexpr std::size_t piecesOfWorker = 4;

/// A record whose rows are made ahead.
struct Ahead {
    std::shared_ptr<Record> record;
    SpectMath::SpectrumPointerList spectra;
    PlainFileOutput::MadeRows rows;
};

std::size_t recordsOfPiece(const PlainFileOutput::Settings &settings)
{
    std::size_t numbers = 1;
    if (settings.metadata)
        numbers += std::size_t(4 * settings.metadata->totalElectrometers + settings.metadata->variables.size());
    for (const auto &ofMode : settings.spectra)
        for (const auto &info : ofMode)
            numbers += 2 * info->nativePoints().size();
    return std::clamp<std::size_t>(numbersOfPiece / numbers, 1, mostRecordsOfPiece);
}

} // namespace

bool writeRecords(PlainFileOutput &output, const Datastore &store, int jobs, const SpectraSource &spectraOf,
                  const WriteProgress &progress)
{
    output.setLossMessages(PlainFileOutput::LossMessages::FirstOfFile);
    WorkTeam team(jobs);
    const std::size_t ofPiece = recordsOfPiece(output.settings());
    std::vector<Ahead> ahead(ofPiece * piecesOfWorker * std::size_t(team.size()));
    for (int begin = 0; begin < store.size(); begin += int(ahead.size())) {
        const std::size_t count = std::min(ahead.size(), std::size_t(store.size() - begin));
        for (std::size_t i = 0; i < count; ++i) {
            ahead[i].record = store.at(begin + int(i));
            ahead[i].spectra = spectraOf(*ahead[i].record);
        }
        team.run((count + ofPiece - 1) / ofPiece, [&](std::size_t piece) {
            for (std::size_t i = piece * ofPiece; i < std::min((piece + 1) * ofPiece, count); ++i)
                output.makeRows(*ahead[i].record, ahead[i].spectra, &ahead[i].rows);
        });
        for (std::size_t i = 0; i < count; ++i) {
            if (!progress(begin + int(i)))
                return false;
            output.writeRows(*ahead[i].record, ahead[i].rows);
        }
    }
    progress(store.size());
    return true;
}

bool writeRecords(PlainFileOutput &output, const Datastore &store, int jobs, const WriteProgress &progress)
{
    return writeRecords(
        output, store, jobs,
        [](const Record &record) -> const SpectMath::SpectrumPointerList & { return record.spectra; }, progress);
}

} // namespace Spectrometer
