#pragma once

#include "demo/campaign.h"

namespace Demo {

/// Writes the campaign as the comma-separated files of old instruments: for each day electrometer signals (`.sig`),
/// variables (`.log`) and the spectra of each mode (`.ions.nds`). False if one could not be written; the log tells.
bool writeLegacyFiles(const Campaign &campaign, const QString &folder);

} // namespace Demo
