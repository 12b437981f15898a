#include "datafiles/writing/recordwriting.h"

#include <QSet>

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

bool writeRecords(PlainFileOutput &output, const Datastore &store, const SpectraSource &spectraOf,
                  const WriteProgress &progress)
{
    output.setLossMessages(PlainFileOutput::LossMessages::FirstOfFile);
    for (int i = 0; i < store.size(); ++i) {
        if (!progress(i))
            return false;
        const std::shared_ptr<Record> record = store.at(i);
        output.writeSpectraRow(*record, spectraOf(*record), record->spectraProvisional);
        output.writeRecordRow(*record);
        output.writeCurrentsRow(*record);
        output.writeDiagnosticsRow(*record);
    }
    progress(store.size());
    return true;
}

bool writeRecords(PlainFileOutput &output, const Datastore &store, const WriteProgress &progress)
{
    return writeRecords(
        output, store, [](const Record &record) -> const SpectMath::SpectrumPointerList & { return record.spectra; },
        progress);
}

} // namespace Spectrometer
