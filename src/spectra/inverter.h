#pragma once

#include "spectra/invertermodel.h"
#include "spectra/spectrum.h"

#include <QString>

#include <memory>
#include <vector>

namespace SpectMath {

class FactoredInversion;

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

    const InverterModel &model() const { return m_model; }
    const InverterSettings &settings() const { return m_model.settings; }
    const SpectrumInfoPointer &info() const { return m_info; }
    /// Of order m, though it is applied to the k points of the output.
    const RealMatrix &smoothingMatrix() const { return m_model.smoothingMatrix; }
    /// Of order n.
    const RealMatrix &regulSmoothingMatrix() const { return m_model.regulSmoothingMatrix; }

private:
    std::shared_ptr<Spectrum> invertRange(const double *signal, std::size_t signalSize, const double *variance,
                                          std::size_t varianceSize, QString *report) const;

    InverterModel m_model;
    SpectrumInfoPointer m_info;
    std::shared_ptr<const FactoredInversion> m_factored; ///< null where the sizes don't fit
};

using InverterPointer = std::shared_ptr<const Inverter>;
using InverterList = std::vector<InverterPointer>;

} // namespace SpectMath
