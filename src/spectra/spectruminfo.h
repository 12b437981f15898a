#pragma once

#include "spectra/mobilitymodel.h"
#include "spectra/moment.h"
#include "spectra/unit.h"
#include "util/numeric.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <limits>
#include <memory>

namespace SpectMath {

enum class DistributionScale { mobility, radius, diameter };
enum class DistributionType { density, fraction };

QString toText(ConcentrationType type);
QString toText(DistributionScale scale);
QString toText(DistributionType type);
/// The value of that word; for an unknown word *ok is false and the result is the fallback.
ConcentrationType concentrationTypeFromText(const QString &text, ConcentrationType fallback, bool *ok = nullptr);
DistributionScale distributionScaleFromText(const QString &text, DistributionScale fallback, bool *ok = nullptr);
DistributionType distributionTypeFromText(const QString &text, DistributionType fallback, bool *ok = nullptr);

/// One point on both axes, used as the limit of a fraction.
struct MobilitySize {
    double diameter = std::numeric_limits<double>::quiet_NaN();
    double mobility = std::numeric_limits<double>::quiet_NaN();
    Unit diameterUnit;
    Unit mobilityUnit;

    /// From a diameter: fills the mobility, in the model's unit.
    static MobilitySize fromDiameter(const MobilityModel &model, double diameter, const Unit &unit);
    /// From a mobility: fills the diameter, in the model's unit.
    static MobilitySize fromMobility(const MobilityModel &model, double mobility, const Unit &unit);
};

/// The description shared by all spectra of one kind: grid, units, name. Const once finish() was called.
struct SpectrumInfo {
    SpectrumInfo();

    QString name; ///< ends in " pos" or " neg" for a polarity
    QString inverterName;
    QString comment;
    QString opmode;
    QString electrometerGroup;
    RealVector radii;      ///< in sizeUnit
    RealVector mobilities; ///< in mobilityUnit
    RealVector mobilitySlopes;
    Unit sizeUnit;     ///< "nm"
    Unit mobilityUnit; ///< "cm^2/s/V"
    Unit concentrationUnit;
    MobilityModel model;
    DistributionScale scale = DistributionScale::mobility; ///< the native axis
    QString hash;                                          ///< the id of this description, in files too
    QByteArray inverterData; ///< the bytes of the inverter file that the spectrum comes from

    /// Fills the other axis, the slopes, an empty hash and an empty opmode. Called once radii or mobilities are set.
    void finish();

    /// The grid on an axis: diameter is twice the radius.
    RealVector points(DistributionScale axis) const;
    const RealVector &nativePoints() const;
    /// A value of another axis on the native one.
    double toNativeScale(double value, DistributionScale from) const;
    Unit concentrationUnitOf(ConcentrationType type) const;
    /// Weights whose dot product with concentrations is the integral of the linearly interpolated density (times the
    /// moment of a size-based type) over log10 of the native axis between the limits.
    RealVector fractionWeights(const MobilitySize &lower, const MobilitySize &upper, ConcentrationType type) const;
    /// The same over the whole axis.
    RealVector totalWeights(ConcentrationType type) const;

    /// "name (inverter)", or the first four characters of the hash in place of an empty inverter name.
    QString displayLabel() const;
};

using SpectrumInfoPointer = std::shared_ptr<const SpectrumInfo>;

/// By name, inverter name, hash.
bool operator<(const SpectrumInfo &a, const SpectrumInfo &b);
/// Name, grid sizes, units, scale and hash; the hash stands for the points.
bool operator==(const SpectrumInfo &a, const SpectrumInfo &b);
inline bool operator!=(const SpectrumInfo &a, const SpectrumInfo &b)
{
    return !(a == b);
}

} // namespace SpectMath
