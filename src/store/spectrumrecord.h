#pragma once

#include "records/record.h"
#include "spectra/spectrum.h"

/// An entry of a spectrum series: one record that has a spectrum of the series' description.
struct SpectrumRecord {
    std::shared_ptr<Record> record;
    std::shared_ptr<SpectMath::Spectrum> spectrum;
    std::int64_t nearestGap = 0; ///< distance in midTime to the nearest neighbour, ticks; 0 for a lone entry
};
