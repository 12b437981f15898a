#include "spectra/spectruminfo.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <utility>

namespace SpectMath {

namespace {

template<typename Enum, std::size_t N>
Enum valueOfWord(const char *const (&words)[N], const QString &text, Enum fallback, bool *ok)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (text == QLatin1String(words[i])) {
            if (ok)
                *ok = true;
            return Enum(i);
        }
    }
    if (ok)
        *ok = false;
    return fallback;
}

constexpr const char *concentrationWords[] = {"number", "radius", "diameter", "surface", "volume"};
constexpr const char *scaleWords[] = {"mobility", "radius", "diameter"};
constexpr const char *distributionWords[] = {"density", "fraction"};

void addInteger(QCryptographicHash &hash, std::int32_t value)
{
    const std::int32_t bytes = qToLittleEndian(value);
    hash.addData(reinterpret_cast<const char *>(&bytes), sizeof(bytes));
}

void addDouble(QCryptographicHash &hash, double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof(bits));
    bits = qToLittleEndian(bits);
    hash.addData(reinterpret_cast<const char *>(&bits), sizeof(bits));
}

/// Field by field: the struct itself has padding.
void addUnit(QCryptographicHash &hash, const Unit &unit)
{
    hash.addData(unit.name.toUtf8());
    addDouble(hash, unit.multiplier);
    for (const std::int32_t exponent : unit.exponents)
        addInteger(hash, exponent);
}

QString hashOf(const SpectrumInfo &info)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(info.name.toUtf8());
    for (const double mobility : info.mobilities)
        addDouble(hash, mobility);
    for (const double radius : info.radii)
        addDouble(hash, radius);
    for (const Unit *unit : {&info.mobilityUnit, &info.sizeUnit, &info.concentrationUnit})
        addUnit(hash, *unit);
    addInteger(hash, std::int32_t(info.scale));
    return QLatin1Char('P') + QString::fromLatin1(hash.result().toHex());
}

/// A radius in sizeUnit from a mobility in mobilityUnit.
double radiusOf(const SpectrumInfo &info, double mobility)
{
    const double f = info.model.sizeUnit.factorTo(info.sizeUnit);
    const double g = info.mobilityUnit.factorTo(info.model.mobilityUnit);
    return mobilityToRadius(info.model, g * mobility) * f;
}

/// A mobility in mobilityUnit from a radius in sizeUnit.
double mobilityOf(const SpectrumInfo &info, double radius)
{
    const double f = info.sizeUnit.factorTo(info.model.sizeUnit);
    const double g = info.model.mobilityUnit.factorTo(info.mobilityUnit);
    return radiusToMobility(info.model, f * radius) * g;
}

void deriveOpmode(SpectrumInfo &info)
{
    for (const char *group : {"pos", "neg"}) {
        const QString suffix = QLatin1Char(' ') + QString::fromLatin1(group);
        if (info.name.endsWith(suffix)) {
            info.opmode = info.name.left(info.name.length() - suffix.length());
            info.electrometerGroup = QString::fromLatin1(group);
            return;
        }
    }
    info.opmode = info.name;
    info.electrometerGroup = QString(); // a group that was given without a mode is lost
}

} // namespace

QString toText(ConcentrationType type)
{
    return QString::fromLatin1(concentrationWords[std::size_t(type)]);
}

QString toText(DistributionScale scale)
{
    return QString::fromLatin1(scaleWords[std::size_t(scale)]);
}

QString toText(DistributionType type)
{
    return QString::fromLatin1(distributionWords[std::size_t(type)]);
}

ConcentrationType concentrationTypeFromText(const QString &text, ConcentrationType fallback, bool *ok)
{
    return valueOfWord(concentrationWords, text, fallback, ok);
}

DistributionScale distributionScaleFromText(const QString &text, DistributionScale fallback, bool *ok)
{
    return valueOfWord(scaleWords, text, fallback, ok);
}

DistributionType distributionTypeFromText(const QString &text, DistributionType fallback, bool *ok)
{
    return valueOfWord(distributionWords, text, fallback, ok);
}

MobilitySize MobilitySize::fromDiameter(const MobilityModel &model, double diameter, const Unit &unit)
{
    MobilitySize result;
    result.diameter = diameter;
    result.diameterUnit = unit;
    result.mobility = radiusToMobility(model, 0.5 * diameter * unit.factorTo(model.sizeUnit));
    result.mobilityUnit = model.mobilityUnit;
    return result;
}

MobilitySize MobilitySize::fromMobility(const MobilityModel &model, double mobility, const Unit &unit)
{
    MobilitySize result;
    result.mobility = mobility;
    result.mobilityUnit = unit;
    result.diameter = 2.0 * mobilityToRadius(model, mobility * unit.factorTo(model.mobilityUnit));
    result.diameterUnit = model.sizeUnit;
    return result;
}

SpectrumInfo::SpectrumInfo() : sizeUnit(Unit::nanometre), mobilityUnit(Unit::mobilityCgs) {}

void SpectrumInfo::finish()
{
    if (scale == DistributionScale::mobility) {
        radii.resize(mobilities.size(), false);
        for (std::size_t i = 0; i < radii.size(); ++i)
            radii[i] = radiusOf(*this, mobilities[i]);
    } else if (scale == DistributionScale::radius) {
        mobilities.resize(radii.size(), false);
        for (std::size_t i = 0; i < radii.size(); ++i)
            mobilities[i] = mobilityOf(*this, radii[i]);
    }
    const double toModel = sizeUnit.factorTo(model.sizeUnit);
    mobilitySlopes.resize(radii.size(), false);
    for (std::size_t i = 0; i < radii.size(); ++i)
        mobilitySlopes[i] = mobilitySlope(model, radii[i] * toModel);
    if (hash.isEmpty())
        hash = hashOf(*this);
    if (opmode.isEmpty())
        deriveOpmode(*this);
}

RealVector SpectrumInfo::points(DistributionScale axis) const
{
    switch (axis) {
    case DistributionScale::mobility:
        return mobilities;
    case DistributionScale::radius:
        return radii;
    case DistributionScale::diameter:
        return radii * 2.0;
    }
    return RealVector();
}

const RealVector &SpectrumInfo::nativePoints() const
{
    return scale == DistributionScale::mobility ? mobilities : radii;
}

double SpectrumInfo::toNativeScale(double value, DistributionScale from) const
{
    if (from == scale)
        return value;
    const double asRadius = from == DistributionScale::diameter ? value * 0.5 : value;
    switch (scale) {
    case DistributionScale::mobility:
        return mobilityOf(*this, asRadius);
    case DistributionScale::radius:
        return from == DistributionScale::mobility ? radiusOf(*this, value) : asRadius;
    case DistributionScale::diameter:
        break; // no conversion onto a native diameter axis is known
    }
    return 0.0;
}

Unit SpectrumInfo::concentrationUnitOf(ConcentrationType type) const
{
    switch (type) {
    case ConcentrationType::number:
        break;
    case ConcentrationType::radius:
    case ConcentrationType::diameter:
        return sizeUnit * concentrationUnit;
    case ConcentrationType::surface:
        return sizeUnit.pow(2) * concentrationUnit;
    case ConcentrationType::volume:
        return sizeUnit.pow(3) * concentrationUnit;
    }
    return concentrationUnit;
}

QString SpectrumInfo::displayLabel() const
{
    return QStringLiteral("%1 (%2)").arg(name, inverterName.isEmpty() ? hash.left(4) : inverterName);
}

bool operator<(const SpectrumInfo &a, const SpectrumInfo &b)
{
    if (a.name != b.name)
        return a.name < b.name;
    if (a.inverterName != b.inverterName)
        return a.inverterName < b.inverterName;
    return a.hash < b.hash;
}

bool operator==(const SpectrumInfo &a, const SpectrumInfo &b)
{
    return a.name == b.name && a.radii.size() == b.radii.size() && a.mobilities.size() == b.mobilities.size() &&
           a.sizeUnit == b.sizeUnit && a.mobilityUnit == b.mobilityUnit && a.concentrationUnit == b.concentrationUnit &&
           a.scale == b.scale && a.hash == b.hash;
}

// ---- weights of integrals

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
