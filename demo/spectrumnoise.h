#pragma once

#include "spectra/spectrum.h"

namespace Demo {

class Random;

/// Noise of deviation one whose neighbours go together over `halfWidth` points, as those of a smooth solution do.
RealVector smoothNoise(std::size_t count, int halfWidth, Random &random);

/// The three errors of a spectrum: how far calculated currents are from those measured from channel `first` on.
void setResiduals(SpectMath::Spectrum &spectrum, const RealVector &calculated, const RealVector &measured,
                  std::size_t first);

/// The form that a failed inversion has: not-a-number on every point.
void setFailed(SpectMath::Spectrum &spectrum, std::size_t points, int status);

} // namespace Demo
