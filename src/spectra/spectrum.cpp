#include "spectra/spectrum.h"

#include "spectra/moment.h"
#include "util/slabarray.h"

#include <QDebug>

#include <cmath>

namespace SpectMath {

namespace {

/// Whether the covariances fit n points; says so on the debug channel if not.
bool hasCovariancesOf(const Spectrum &spectrum, std::size_t n)
{
    const BandMatrix &c = spectrum.covariances;
    if (c.size1() == n && c.size2() == n)
        return true;
    qDebug() << "getFractions failed because covariances size is" << c.size1() << c.size2() << "instead of" << n;
    return false;
}

RealVector standardDeviations(const BandMatrix &covariances)
{
    RealVector result(covariances.size1());
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = std::sqrt(covariances(i, i));
    return result;
}

/// Where the moment of a distribution's value i is taken: the radii, or for fractions the geometric mean of neighbours.
RealVector momentRadii(const RealVector &radii, DistributionType distribution)
{
    if (distribution == DistributionType::density || radii.size() < 2)
        return radii;
    RealVector result(radii.size() - 1);
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = std::sqrt(radii[i] * radii[i + 1]);
    return result;
}

/// The tridiagonal band of matrix · (covariances · matrix). The matrix's own zeros take part: 0 · NaN spreads a missing
/// value over the whole spectrum, as it does for the concentrations.
BandMatrix smoothedBand(const BandMatrix &covariances, const RealMatrix &matrix)
{
    const std::size_t n = covariances.size1();
    const std::size_t below = covariances.lower();
    const std::size_t above = covariances.upper();
    RealMatrix right(n, n, 0.0);
    for (std::size_t k = 0; k < n; ++k) {
        for (std::size_t l = k > below ? k - below : 0; l < n && l <= k + above; ++l) {
            const double c = covariances(k, l);
            for (std::size_t j = 0; j < n; ++j)
                right(k, j) += c * matrix(l, j);
        }
    }
    BandMatrix band(n, n, 1, 1);
    band.clear();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i > 0 ? i - 1 : 0; j < n && j <= i + 1; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < n; ++k)
                sum += matrix(i, k) * right(k, j);
            band(i, j) = sum;
        }
    }
    return band;
}

} // namespace

double concentrationOf(const Spectrum &spectrum, const RealVector &weights)
{
    const std::size_t n = weights.size();
    if (spectrum.status != 0 || n == 0 || spectrum.concentrations.size() != n)
        return noValue;
    const double *const c = spectrum.concentrations.data().begin();
    const double *const w = weights.data().begin();
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i)
        sum += w[i] * c[i];
    return sum;
}

double decadesOf(double concentration)
{
    return concentration <= 0 ? -std::numeric_limits<double>::infinity() : std::log10(concentration);
}

std::shared_ptr<Spectrum> makeSpectrum()
{
    return std::allocate_shared<Spectrum>(SlabAllocator<Spectrum>());
}

bool Spectrum::isValid() const
{
    return info && concentrations.size() == info->nativePoints().size();
}

void Spectrum::getFractions(RealVector &fractions, RealVector &uncertainties) const
{
    if (!info)
        return;
    const RealVector &grid = info->nativePoints();
    const std::size_t n = grid.size();
    if (!hasCovariancesOf(*this, n) || concentrations.size() != n)
        return;
    const std::size_t count = n < 2 ? 0 : n - 1;
    RealVector values(count);
    RealVector deviations(count);
    const BandMatrix &variances = covariances;
    for (std::size_t i = 0; i < count; ++i) {
        const double x0 = std::log10(grid[i]);
        const double x1 = std::log10(grid[i + 1]);
        const double d = x1 - x0;
        const double sign = x0 > x1 ? -1.0 : 1.0;
        values[i] = sign * ((concentrations[i] + concentrations[i + 1]) * d / 2);
        deviations[i] = sign * ((std::sqrt(variances(i, i)) + std::sqrt(variances(i + 1, i + 1))) * d / 2);
    }
    fractions.swap(values);
    uncertainties.swap(deviations);
}

void Spectrum::getDistribution(DistributionType distribution, ConcentrationType type, RealVector &values,
                               RealVector &uncertainties) const
{
    RealVector base;
    RealVector deviations;
    if (distribution == DistributionType::fraction) {
        getFractions(base, deviations);
    } else if (info && hasCovariancesOf(*this, concentrations.size())) {
        base = concentrations;
        deviations = standardDeviations(covariances);
    }
    if (type != ConcentrationType::number && !base.empty()) {
        const RealVector radii = momentRadii(info->radii, distribution);
        if (radii.size() != base.size()) {
            base = RealVector();
            deviations = RealVector();
        }
        for (std::size_t i = 0; i < base.size(); ++i) {
            const double moment = timesMoment(1.0, radii[i], type);
            base[i] = moment * base[i];
            deviations[i] = moment * deviations[i];
        }
    }
    values.swap(base);
    uncertainties.swap(deviations);
}

Spectrum Spectrum::smoothed(double width, CovarianceSmoothing mode) const
{
    if (!isValid() || concentrations.size() < 2 || width == 0.0)
        return *this;
    return smoothed(smoothingWindowMatrix(int(concentrations.size()), width), mode);
}

Spectrum Spectrum::smoothed(const RealMatrix &matrix, CovarianceSmoothing mode) const
{
    const std::size_t n = concentrations.size();
    if (!isValid() || n < 2 || matrix.size1() != n || matrix.size2() != n)
        return *this;
    Spectrum result;
    result.info = info;
    result.concentrations = RealVector(n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j)
            result.concentrations[j] += concentrations[i] * matrix(i, j);
    }
    const bool square = covariances.size1() == n && covariances.size2() == n;
    result.covariances =
        mode == CovarianceSmoothing::smooth && square ? smoothedBand(covariances, matrix) : covariances;
    return result;
}

} // namespace SpectMath
