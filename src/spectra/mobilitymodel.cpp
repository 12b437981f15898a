#include "spectra/mobilitymodel.h"

#include <cmath>
#include <limits>

namespace SpectMath {

MobilityModel::MobilityModel()
    : sizeUnit(QString(), Unit::metre.multiplier, Unit::metre.exponents),
      mobilityUnit((Unit::metre * Unit::metre / Unit::second / Unit::volt).named(QStringLiteral("m^2/s/V")))
{
}

MobilityModel::MobilityModel(double a, double b, double c, double freePath, double constant, const Unit &size,
                             const Unit &mobility)
    : slipA(a), slipB(b), slipC(c), meanFreePath(freePath), mobilityConstant(constant), lengthScale(1.0),
      mobilityScale(1.0), sizeUnit(size), mobilityUnit(mobility)
{
}

double radiusToMobility(const MobilityModel &model, double r, double q)
{
    if (std::isnan(r))
        return r;
    if (r == 0.0)
        return std::numeric_limits<double>::infinity();
    const double R = std::fabs(r) * model.lengthScale;
    const double e = std::exp(-(R * model.slipC / model.meanFreePath));
    const double t = model.meanFreePath / R;
    const double sign = r < 0.0 ? -1.0 : 1.0;
    return ((e * model.slipB + model.slipA) * t + 1.0) * (q * model.mobilityConstant / R) * sign / model.mobilityScale;
}

double mobilityToRadius(const MobilityModel &model, double z, double q)
{
    if (std::isnan(z))
        return z;
    if (std::isinf(z))
        return 0.0;
    if (z == 0.0)
        return std::numeric_limits<double>::quiet_NaN();
    const double Z = std::fabs(z) * model.mobilityScale;
    const double c = q * model.mobilityConstant / Z;
    double a = 100.0;
    double b = 100.0;
    do {
        a = a * 0.8;
        b = b * 0.2 + a;
        const double e = std::exp(-(model.slipC * b / model.meanFreePath));
        a = ((e * model.slipB + model.slipA) * (model.meanFreePath / b) + 1.0) * c;
    } while (std::fabs(b - a) > 0.001 * b); // a NaN ends it. Grids in existing files depend on this very stop.
    const double radius = a * (z < 0.0 ? -1.0 : 1.0) / model.lengthScale;
    return std::isnan(radius) ? std::numeric_limits<double>::quiet_NaN() : radius; // never one with its sign set
}

double mobilitySlope(const MobilityModel &model, double r)
{
    const double R = r * model.lengthScale;
    const double lambda = model.meanFreePath;
    const double e = std::exp(-(model.slipC * R / lambda));
    const double numerator =
        2.0 * lambda * model.slipA + R + 2.0 * lambda * model.slipB * e + model.slipB * model.slipC * e * R;
    const double denominator = (model.slipA * lambda + R + model.slipB * lambda * e) * R;
    return -((numerator / denominator) * R) / model.mobilityScale;
}

} // namespace SpectMath
