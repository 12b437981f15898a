#include "spectra/spectruminfo.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <cmath>
#include <cstring>

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

} // namespace SpectMath
