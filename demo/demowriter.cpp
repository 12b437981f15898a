#include "demo/demowriter.h"

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

PlainFileOutput::RowCounts writeCampaign(const Campaign &campaign, const QString &folder)
{
    PlainFileOutput output(outputSettings(campaign, folder));
    for (int slot = 0; slot < campaign.slotCount(); ++slot) {
        const auto record = campaign.record(slot);
        if (!record)
            continue;
        output.writeRecordRow(*record);
        output.writeSpectraRow(*record);
    }
    output.closeFiles();
    return output.counts();
}

} // namespace Demo
