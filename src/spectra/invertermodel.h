#pragma once

#include "spectra/spectrum.h"

#include <QString>

#include <cstdint>

namespace Inversion {

/// Sizes that don't fit. A record that merely can't be inverted has a spectrum with a status instead.
class InversionException {
public:
    explicit InversionException(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

} // namespace Inversion

namespace SpectMath {

/// The contents of an inverter file for one mode and polarity: m currents, n classes of the intermediate vector, k
/// points.
struct InverterSettings {
    RealMatrix instrumentMatrix;   ///< m by n: currents of one particle per class
    RealMatrix postTransform;      ///< n by k: classes to published points; 0 rows for none
    double initialRegulCoef = 0.1; ///< regularisation of the first estimate, and the least of all
    double nextRegulCoef = 2.0;
    std::int32_t negRemoveIterations = 10;
    double negRemoveCoef = 0.5;      ///< kept for the files' sake; nothing consults it, on purpose
    double smoothing = 0.0;          ///< window width on the output; meaningful for k = m only
    double regulSmoothingCoef = 2.0; ///< window width on the regularisation; 0 leaves it unsmoothed
    bool regulOffDiagCorrection = false;
    double regulLimit = noValue; ///< greatest regularisation of a class, if hasRegulLimit
    bool hasRegulLimit = false;
    RealVector totalWeights;   ///< dot product with a spectrum: its total number concentration
    bool negSignalBias = true; ///< a negative current adds its square to its variance
};

/// All that the arithmetic of an inversion reads: the settings, and the smoothing matrices that follow from them.
struct InverterModel {
    InverterSettings settings;
    RealMatrix smoothingMatrix;      ///< of order m, though it is applied to the k points of the output
    RealMatrix regulSmoothingMatrix; ///< of order n
};

} // namespace SpectMath
