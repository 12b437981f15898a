#pragma once

#include "spectra/spectruminfo.h"

#include <optional>

namespace Tsb {

/// The vertical axis of a spectrogram. The smallest particles are at the bottom; a radius is shown as a diameter.
struct SpectrogramAxis {
    double bottom = 0; ///< decades of the value on the bottom edge; a mobility axis falls upward
    double top = 1;
    bool reversedRows = false; ///< the last bin on the bottom row
};

/// None for a grid of fewer than two points.
std::optional<SpectrogramAxis> spectrogramAxis(const SpectMath::SpectrumInfo &info);

} // namespace Tsb
