#pragma once

#include <QMap>
#include <QString>

#include <array>
#include <cstdint>

/// A physical unit: a name to print, a multiplier to the base units and the exponents of the seven base dimensions.
/// A plain value. The name takes no part in arithmetic.
class Unit {
public:
    enum Dimension { Metre, Kilogram, Second, Ampere, Kelvin, Mole, Candela, DimensionCount };
    using Exponents = std::array<std::int32_t, DimensionCount>;

    Unit() = default; ///< dimensionless, multiplier 1, no name
    Unit(const QString &unitName, double unitMultiplier, const Exponents &unitExponents);

    QString name;            ///< may be null
    double multiplier = 1.0; ///< value of one of this unit in the base units
    Exponents exponents{};   ///< m, kg, s, A, K, mol, cd

    /// The name, or the multiplier and the base units in text, such as "1e+06/m^3".
    QString toString() const;
    /// A copy whose name is replaced unless the given one is null.
    Unit named(const QString &newName) const;
    /// Exponents times the power; 2 is a plain square, any other power goes through pow().
    Unit pow(int power) const;
    bool sameDimension(const Unit &other) const { return exponents == other.exponents; }
    /// The factor from this unit to another. Dimensions aren't compared.
    double factorTo(const Unit &other) const;

    static const Unit metre, kilogram, second, ampere, kelvin, mole, candela;
    static const Unit volt, nanometre, mobilityCgs, dimensionless;
};

Unit operator*(const Unit &a, const Unit &b);
Unit operator/(const Unit &a, const Unit &b);
Unit operator*(const Unit &unit, double factor);
Unit operator*(double factor, const Unit &unit);
Unit operator/(const Unit &unit, double divisor);
Unit operator/(double dividend, const Unit &unit);
/// Exponents, multipliers and names, all exactly.
bool operator==(const Unit &a, const Unit &b);
inline bool operator!=(const Unit &a, const Unit &b)
{
    return !(a == b);
}
