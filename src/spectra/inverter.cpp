#include "spectra/inverter.h"

#include "spectra/factoredinversion.h"
#include "spectra/inversionreport.h"
#include "spectra/plaininversion.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace SpectMath {

namespace {

using Inversion::InversionException;

constexpr double varianceOfMissing = 1e10;

TreatedSignal treat(const double *signal, const double *variance, std::size_t size, bool negativeBias)
{
    TreatedSignal treated{{signal, signal + size}, {variance, variance + size}};
    for (std::size_t i = 0; i < size; ++i) {
        double &s = treated.signal[i];
        double &v = treated.variance[i];
        if (std::isnan(s)) {
            s = 0.0;
            v = varianceOfMissing;
        } else if (negativeBias && s < 0) {
            v = v + s * s;
        }
    }
    return treated;
}

/// The currents that the classes would give. Rows four at a time: sums that wait for each other take longer than the
/// rest.
std::vector<double> calculatedSignal(const RealMatrix &instrument, const std::vector<double> &classes)
{
    const std::size_t m = instrument.size1();
    const std::size_t n = classes.size();
    std::vector<double> result(m, 0.0);
    const double *a = instrument.data().begin();
    for (std::size_t i = 0; i < m; i += 4) {
        const std::size_t rows = std::min<std::size_t>(4, m - i);
        double sums[4] = {};
        for (std::size_t j = 0; j < n; ++j) {
            for (std::size_t r = 0; r < 4; ++r)
                sums[r] += a[(i + std::min(r, rows - 1)) * n + j] * classes[j];
        }
        std::copy(sums, sums + rows, result.begin() + std::ptrdiff_t(i));
    }
    return result;
}

void setResiduals(Spectrum &spectrum, const double *signal, const std::vector<double> &calculated)
{
    double squares = 0.0;
    double absolutes = 0.0;
    double total = 0.0;
    for (std::size_t i = 0; i < calculated.size(); ++i) {
        const double d = calculated[i] - signal[i];
        squares += d * d;
        absolutes += std::fabs(d);
        total += d;
    }
    const auto m = double(calculated.size());
    const auto stored = [](double value) { return std::isnan(value) ? noValue : value; };
    spectrum.currentRmsError = stored(std::sqrt(squares) / std::sqrt(m));
    spectrum.currentMeanAbsError = stored(absolutes / m);
    spectrum.currentTotalError = stored(total);
}

/// A failed spectrum keeps its place, as missing values.
void setMissing(Spectrum &spectrum)
{
    if (!spectrum.info)
        return;
    const std::size_t n = spectrum.info->nativePoints().size();
    spectrum.concentrations.resize(n, false);
    std::fill(spectrum.concentrations.begin(), spectrum.concentrations.end(), noValue);
    spectrum.covariances.resize(n, n, 1, 1, false);
    std::fill(spectrum.covariances.data().begin(), spectrum.covariances.data().end(), noValue);
}

/// The weights of the classes in the total concentration.
std::vector<double> classTotals(const InverterSettings &settings)
{
    const RealMatrix &p = settings.postTransform;
    if (p.size1() == 0)
        return {settings.totalWeights.begin(), settings.totalWeights.end()};
    std::vector<double> result(p.size1(), 0.0);
    for (std::size_t i = 0; i < p.size1(); ++i) {
        for (std::size_t j = 0; j < std::min(p.size2(), settings.totalWeights.size()); ++j)
            result[i] += p(i, j) * settings.totalWeights[j];
    }
    return result;
}

InverterModel modelOf(InverterSettings settings)
{
    const RealMatrix &instrument = settings.instrumentMatrix;
    InverterModel model{{},
                        smoothingWindowMatrix(int(instrument.size1()), settings.smoothing),
                        smoothingWindowMatrix(int(instrument.size2()), settings.regulSmoothingCoef)};
    model.settings = std::move(settings);
    return model;
}

} // namespace

Inverter::Inverter(InverterSettings settings, SpectrumInfoPointer info)
    : m_model(modelOf(std::move(settings))), m_info(std::move(info)), m_factored(FactoredInversion::prepare(m_model))
{
}

Inverter::~Inverter() = default;

Inverter::Inverter(const Inverter &) = default;

std::shared_ptr<Spectrum> Inverter::invert(const RealVector &signal, const RealVector &variance, QString *report) const
{
    return invertRange(signal.data().begin(), signal.size(), variance.data().begin(), variance.size(), report);
}

std::shared_ptr<Spectrum> Inverter::invert(const RealVector &signal, const RealVector &variance, int begin, int end,
                                           QString *report) const
{
    if (begin < 0 || end < begin || std::size_t(end) > signal.size())
        throw InversionException(QStringLiteral("Invalid vector subrange"));
    const auto from = std::size_t(begin);
    const auto count = std::size_t(end - begin);
    const std::size_t offset = std::min(from, variance.size());
    return invertRange(signal.data().begin() + from, count, variance.data().begin() + offset,
                       std::min(count, variance.size() - offset), report);
}

std::shared_ptr<Spectrum> Inverter::invertRange(const double *signal, std::size_t signalSize, const double *variance,
                                                std::size_t varianceSize, QString *report) const
{
    const RealMatrix &instrument = m_model.settings.instrumentMatrix;
    if (signalSize != instrument.size1() || varianceSize != instrument.size1())
        throw InversionException(QStringLiteral("Instrument matrix does not match signal vector size"));
    const TreatedSignal treated = treat(signal, variance, signalSize, m_model.settings.negSignalBias);

    std::optional<InversionSteps> factored;
    if (m_factored)
        factored = m_factored->invert(m_model, treated, report != nullptr);
    InversionSteps steps = factored ? std::move(*factored) : invertPlainly(m_model, treated, report != nullptr);

    auto spectrum = makeSpectrum();
    spectrum->info = m_info;
    spectrum->status = steps.status;
    std::vector<double> calculated;
    if (steps.status == 0) {
        calculated = calculatedSignal(instrument, steps.classes);
        setResiduals(*spectrum, signal, calculated);
        spectrum->concentrations.swap(steps.concentrations);
        spectrum->covariances.swap(steps.covariances);
    } else {
        setMissing(*spectrum);
    }
    if (report)
        *report = inversionReport(steps, classTotals(m_model.settings), {signal, signal + signalSize}, calculated);
    return spectrum;
}

} // namespace SpectMath
