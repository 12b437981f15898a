#include "demo/demowriter.h"

#include "datafiles/writing/commentwriting.h"
#include "log/logger.h"

namespace Demo {

using Spectrometer::PlainFileOutput;

PlainFileOutput::Settings outputSettings(const Campaign &campaign, const QString &folder)
{
    PlainFileOutput::Settings settings;
    settings.folder = folder;
    settings.fileNamePattern = QStringLiteral("%Y%m%d");
    settings.timeFormat = QStringLiteral("%Y-%m-%d %H:%M:%s");
    settings.variants[0].name = campaign.metadata()->dpVariants.first().name;
    settings.inversionVars = true;
    settings.metadata = campaign.metadata();
    settings.spectra = campaign.spectra();
    return settings;
}

PlainFileOutput::RowCounts writeCampaign(const Campaign &campaign, const QString &folder,
                                         const std::function<void(double done)> &tellProgress)
{
    PlainFileOutput output(outputSettings(campaign, folder));
    for (int slot = 0; slot < campaign.slotCount(); ++slot) {
        const auto record = campaign.record(slot);
        if (tellProgress)
            tellProgress(slot / double(campaign.slotCount()));
        if (!record)
            continue;
        output.writeRecordRow(*record);
        output.writeSpectraRow(*record);
    }
    output.closeFiles();
    return output.counts();
}

bool writeComments(const Campaign &campaign, const QString &folder)
{
    const struct {
        double hour; ///< of the first day
        Mode mode;
        QString text;
    } comments[] = {
        {2.1, Mode::Ions, QStringLiteral("Inlet was cleaned, the filter is new")},
        {7.2, Mode::Particles, QStringLiteral("Charger repaired, see C:\\Logs\\charger.txt")},
        {12.0, Mode::Particles,
         QString::fromUtf8("New particles over the B\xc3\xb6hmerwald:\nfirst at 2 nm,\tin the evening at 40 nm")},
    };
    const Spectrometer::RecordMetadata &metadata = *campaign.metadata();
    bool areWritten = true;
    for (const auto &comment : comments) {
        std::shared_ptr<const Record> record;
        for (int slot = 0; slot < campaign.slotCount() && !record; ++slot)
            if (Campaign::modeOf(slot) == comment.mode && campaign.dayOf(slot) * 24 >= comment.hour)
                record = campaign.record(slot);
        if (!record)
            continue; // the records are too far apart
        const CommentPlace place(folder, metadata.dpVariants.first().name, *record,
                                 metadata.opmodeName(record->opmode));
        const QString reason = writeComment(place, comment.text);
        if (reason.isNull())
            continue;
        Log::Logger(QStringLiteral("comments")).log(Log::Error, QStringLiteral("%1: %2").arg(place.path, reason));
        areWritten = false;
    }
    return areWritten;
}

} // namespace Demo
