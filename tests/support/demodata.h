#pragma once

#include "demo/demowriter.h"
#include "demo/inverterfile.h"

#include <QFileInfo>

/// A demonstration's day files, and beside their folder, in "inverters", what their spectra come from.
inline void writeDemoData(const QString &folder, int interval, int days = 1, std::uint64_t seed = 1)
{
    Demo::Campaign::Settings settings;
    settings.interval = interval;
    settings.days = days;
    settings.seed = seed;
    const Demo::Campaign campaign(settings);
    Demo::writeCampaign(campaign, folder);
    Demo::writeInverterFiles(campaign.inverterFiles(), QFileInfo(folder).path() + "/inverters");
}
