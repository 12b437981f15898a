#pragma once

#include "spectra/inversionsteps.h"

#include <QString>

namespace SpectMath {

/// The HTML report of an inversion, numbers with six significant digits. `totals` are the weights whose dot product
/// with the classes is the total concentration (the common length counts); `signal` holds the measured currents,
/// `calculated` those that the classes would give. Empty if the first solve failed; without the end table if a later
/// one did.
QString inversionReport(const InversionSteps &steps, const std::vector<double> &totals,
                        const std::vector<double> &signal, const std::vector<double> &calculated);

} // namespace SpectMath
