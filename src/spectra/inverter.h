#pragma once

#include "spectra/spectrum.h"

#include <QString>

#include <memory>
#include <vector>

namespace Inversion {

/// Sizes that don't fit each other. The one exception of an inversion; a failed solution is a status, not an exception.
class InversionException {
public:
    explicit InversionException(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

} // namespace Inversion

namespace SpectMath {

/// What an inverter file tells, in the order in which it is kept. m rows are currents, n columns size classes, k the
/// points of the published grid.
struct InverterSettings {
    RealMatrix instrumentMatrix; ///< m by n
    RealMatrix postTransform;    ///< n by k; 0 rows: none
    double initialRegulCoef = 0.1;
    double nextRegulCoef = 2.0;
    std::int32_t negRemoveIterations = 10;
    double negRemoveCoef = 0.5; ///< kept, and consulted by no step
    double smoothing = 0.0;
    double regulSmoothingCoef = 2.0;
    bool regulOffDiagCorrection = false;
    double regulLimit = noValue; ///< valid if the next is true
    bool hasRegulLimit = false;
    RealVector totalWeights; ///< one per point of the final spectrum; the dot product is its total number concentration
    bool negSignalBias = true;
};

/// The instrument matrix of one operating mode and polarity, and the regularised weighted least-squares inversion of a
/// current vector into a spectrum with its uncertainty. Immutable; any number of threads may invert at the same time.
class Inverter {
public:
    Inverter(InverterSettings settings, SpectrumInfoPointer info);
    ~Inverter();

    const InverterSettings &settings() const { return m_settings; }
    const SpectrumInfoPointer &info() const { return m_info; }

    /// Inverts whole vectors (fA and fA^2). With a report pointer the HTML report is handed over too.
    /// Throws Inversion::InversionException.
    std::shared_ptr<Spectrum> invert(const RealVector &signal, const RealVector &variance,
                                     QString *report = nullptr) const;
    /// The same on the elements from begin (inclusive) to end (exclusive) of both vectors.
    std::shared_ptr<Spectrum> invert(const RealVector &signal, const RealVector &variance, int begin, int end,
                                     QString *report = nullptr) const;

private:
    InverterSettings m_settings;
    SpectrumInfoPointer m_info;
    RealMatrix m_smoothingMatrix;      ///< order m, as the instrument has currents
    RealMatrix m_regulSmoothingMatrix; ///< order n
};

using InverterPointer = std::shared_ptr<const Inverter>;
using InverterList = std::vector<InverterPointer>;

} // namespace SpectMath
