#pragma once

#include "datafiles/writing/plainfileoutput.h"
#include "demo/campaign.h"

#include <functional>

namespace Demo {

/// The settings that write a campaign's variant "block" into a folder, with the residuals of the currents.
Spectrometer::PlainFileOutput::Settings outputSettings(const Campaign &campaign, const QString &folder);

/// Writes the records and spectra files of a campaign. Rows that could not be written are counted and logged.
/// `tellProgress`, where there is one, is called with the share that is done, from 0 to 1.
Spectrometer::PlainFileOutput::RowCounts writeCampaign(const Campaign &campaign, const QString &folder,
                                                       const std::function<void(double done)> &tellProgress = {});

/// Writes three comments on records of the campaign's first day, beside their day files. False if one could not be
/// written, which is logged.
bool writeComments(const Campaign &campaign, const QString &folder);

} // namespace Demo
