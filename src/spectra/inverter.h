#pragma once

#include "spectra/spectrum.h"

#include <QString>

#include <memory>
#include <vector>

namespace Inversion {

/// Sizes that don't fit. What merely can't be inverted is a status of the spectrum instead.
class InversionException {
public:
    explicit InversionException(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

} // namespace Inversion

namespace SpectMath {

class FactoredInversion;

/// What an inverter file holds for one mode and polarity. m currents, n classes of the intermediate vector, k points.
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

/// Turns currents and their variances into a spectrum with uncertainty: weighted least squares with an adaptive
/// regularisation of each class on the diagonal of the normal matrix S = Aᵀ W A, then removal of classes that came out
/// negative, the transformation to the published grid, and smoothing.
///
/// Two ways lead there. The plain scheme (plaininversion.h) inverts packed normal matrices by Gauss-Jordan steps
/// without pivoting and defines the result, failures included. The factored one (factoredinversion.h) gives the same
/// numbers to rounding several times as fast, and is left for the plain one whenever it can't vouch for that.
/// Immutable; any number of threads may invert at a time.
class Inverter {
public:
    Inverter(InverterSettings settings, SpectrumInfoPointer info);
    ~Inverter();
    Inverter(const Inverter &);
    Inverter &operator=(const Inverter &) = delete;

    /// A new spectrum with this inverter's info. Its status is 0, or 2 for a variance of zero, 3 where the first
    /// inversion of the normal matrix fails (also when no class is left), 4 where the second does; then all its values
    /// are NaN. Values that aren't finite give NaN with status 0. With `report` that text gets the HTML report of the
    /// steps. Throws Inversion::InversionException where sizes don't fit.
    std::shared_ptr<Spectrum> invert(const RealVector &signal, const RealVector &variance,
                                     QString *report = nullptr) const;
    /// The same on the elements from `begin` up to but without `end` of both vectors.
    std::shared_ptr<Spectrum> invert(const RealVector &signal, const RealVector &variance, int begin, int end,
                                     QString *report = nullptr) const;

    const InverterSettings &settings() const { return m_settings; }
    const SpectrumInfoPointer &info() const { return m_info; }
    /// Of order m, though it is applied to the k points of the output.
    const RealMatrix &smoothingMatrix() const { return m_smoothingMatrix; }
    /// Of order n.
    const RealMatrix &regulSmoothingMatrix() const { return m_regulSmoothingMatrix; }

private:
    std::shared_ptr<Spectrum> invertRange(const double *signal, std::size_t signalSize, const double *variance,
                                          std::size_t varianceSize, QString *report) const;

    InverterSettings m_settings;
    SpectrumInfoPointer m_info;
    RealMatrix m_smoothingMatrix;
    RealMatrix m_regulSmoothingMatrix;
    std::shared_ptr<const FactoredInversion> m_factored; ///< null where the sizes don't fit
};

using InverterPointer = std::shared_ptr<const Inverter>;
using InverterList = std::vector<InverterPointer>;

} // namespace SpectMath
