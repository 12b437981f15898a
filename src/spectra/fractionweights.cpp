#include "spectra/moment.h"
#include "spectra/spectruminfo.h"

#include <cmath>
#include <utility>

namespace SpectMath {

namespace {

/// The limits of an integral on the native axis. A limit that isn't a number stands for its own end of the grid, so the
/// comparisons below are written out: min and max would choose by the order of their arguments.
struct Limits {
    double low;
    double high;
};

Limits nativeLimits(const SpectrumInfo &info, const MobilitySize &lower, const MobilitySize &upper)
{
    if (info.scale == DistributionScale::mobility)
        return {upper.mobility * upper.mobilityUnit.factorTo(info.mobilityUnit),
                lower.mobility * lower.mobilityUnit.factorTo(info.mobilityUnit)};
    // The grid of a diameter scale is radii all the same, and is compared with diameters.
    const double part = info.scale == DistributionScale::radius ? 0.5 : 1.0;
    return {part * lower.diameter * lower.diameterUnit.factorTo(info.sizeUnit),
            part * upper.diameter * upper.diameterUnit.factorTo(info.sizeUnit)};
}

/// Adds the weights of the two ends of one interval of an ascending axis.
void addInterval(double x0, double x1, Limits limits, double &c0, double &c1)
{
    const double w = x1 - x0;
    if (x0 <= limits.low || limits.high <= x1) {
        const double t0 = ((limits.low < x0 ? x0 : limits.low) - x0) / w;
        const double t1 = ((x1 < limits.high ? x1 : limits.high) - x0) / w;
        const double m = (t0 + t1) / 2;
        const double s = t1 - t0;
        c0 += (1 - m) * s * w;
        c1 += s * m * w;
    } else {
        c0 += w / 2;
        c1 += w / 2;
    }
}

} // namespace

RealVector SpectrumInfo::fractionWeights(const MobilitySize &lower, const MobilitySize &upper,
                                         ConcentrationType type) const
{
    RealVector p = nativePoints();
    RealVector c(p.size(), 0.0);
    if (p.size() < 2)
        return c;
    const Limits native = nativeLimits(*this, lower, upper);
    double a = std::log10(native.low);
    double b = std::log10(native.high);
    for (double &x : p)
        x = std::log10(x);
    if (p[0] > p[1]) {
        p = -p;
        a = -a;
        b = -b;
        std::swap(a, b);
    }
    Limits limits = b < a ? Limits{b, a} : Limits{a, b};
    if (std::isnan(limits.low))
        limits.low = p[0];
    if (std::isnan(limits.high))
        limits.high = p[p.size() - 1];
    if (limits.high < limits.low)
        return c;
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        if (p[i] <= limits.high && limits.low <= p[i + 1])
            addInterval(p[i], p[i + 1], limits, c[i], c[i + 1]);
    }
    for (std::size_t i = 0; i < c.size() && i < radii.size(); ++i)
        c[i] = timesMoment(c[i], radii[i], type);
    return c;
}

RealVector SpectrumInfo::totalWeights(ConcentrationType type) const
{
    MobilitySize lower, upper;
    lower.diameterUnit = upper.diameterUnit = sizeUnit;
    lower.mobilityUnit = upper.mobilityUnit = mobilityUnit;
    lower.diameter = upper.mobility = 0.0;
    lower.mobility = upper.diameter = std::numeric_limits<double>::infinity();
    return fractionWeights(lower, upper, type);
}

} // namespace SpectMath
