#include "spectra/unit.h"

#include <cmath>
#include <limits>

namespace {

std::int32_t exponentOf(std::int64_t value)
{
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t greatest = std::numeric_limits<std::int32_t>::max();
    return std::int32_t(value < least ? least : value > greatest ? greatest : value);
}

/// a + factor * b, held within 32 bits.
Unit::Exponents combined(const Unit::Exponents &a, const Unit::Exponents &b, std::int64_t factor)
{
    Unit::Exponents result;
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = exponentOf(a[i] + factor * b[i]);
    return result;
}

/// Puts parentheses around a name that has an operator within parentheses. Operators outside of them don't count: a
/// name such as "a*b" stays bare on purpose, since existing files hold names that were made this way.
QString parenthesised(const QString &name)
{
    int depth = 0;
    for (const QChar c : name) {
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (depth > 0 && (c == QLatin1Char('*') || c == QLatin1Char('/')))
            return QStringLiteral("(%1)").arg(name);
    }
    return name;
}

/// The pattern filled with both names, or null where one of them is missing.
QString joinedName(const QString &pattern, const QString &a, const QString &b)
{
    return a.isEmpty() || b.isEmpty() ? QString() : pattern.arg(a, b);
}

QString exponentText(std::int64_t exponent, const QString &symbol)
{
    if (exponent == 0)
        return QString();
    const QString sign = exponent < 0 ? QStringLiteral("/") : QStringLiteral("*");
    const std::int64_t power = std::abs(exponent);
    return power == 1 ? sign + symbol : sign + symbol + QLatin1Char('^') + QString::number(power);
}

Unit baseUnit(const char *name, Unit::Dimension dimension)
{
    Unit::Exponents exponents{};
    exponents[dimension] = 1;
    return Unit(QString::fromLatin1(name), 1.0, exponents);
}

} // namespace

// In this order: the later ones are computed from the earlier.
const Unit Unit::metre = baseUnit("m", Metre);
const Unit Unit::kilogram = baseUnit("kg", Kilogram);
const Unit Unit::second = baseUnit("s", Second);
const Unit Unit::ampere = baseUnit("A", Ampere);
const Unit Unit::kelvin = baseUnit("K", Kelvin);
const Unit Unit::mole = baseUnit("mol", Mole);
const Unit Unit::candela = baseUnit("cd", Candela);
const Unit Unit::volt = (metre * metre * kilogram / second / second / second / ampere).named(QStringLiteral("V"));
const Unit Unit::nanometre = (1e-9 * metre).named(QStringLiteral("nm"));
const Unit Unit::mobilityCgs = (0.01 * metre * 0.01 * metre / second / volt).named(QStringLiteral("cm^2/s/V"));
const Unit Unit::dimensionless;

Unit::Unit(const QString &unitName, double unitMultiplier, const Exponents &unitExponents)
    : name(unitName), multiplier(unitMultiplier), exponents(unitExponents)
{
}

QString Unit::toString() const
{
    if (!name.isEmpty())
        return name;
    static const char *const symbols[DimensionCount] = {"m", "kg", "s", "A", "K", "mol", "cd"};
    QString terms;
    for (int i = 0; i < DimensionCount; ++i)
        terms += exponentText(exponents[std::size_t(i)], QString::fromLatin1(symbols[i]));
    if (multiplier != 1.0)
        return QStringLiteral("%1").arg(multiplier) + terms;
    if (terms.isEmpty())
        return QStringLiteral("1");
    return terms.startsWith(QLatin1Char('/')) ? QLatin1Char('1') + terms : terms.mid(1);
}

Unit Unit::named(const QString &newName) const
{
    return newName.isNull() ? *this : Unit(newName, multiplier, exponents);
}

Unit Unit::pow(int power) const
{
    const QString newName =
        name.isEmpty() ? QString() : QStringLiteral("%1^%2").arg(parenthesised(name), QString::number(power));
    return Unit(newName, power == 2 ? multiplier * multiplier : std::pow(multiplier, power),
                combined(Exponents{}, exponents, power));
}

double Unit::factorTo(const Unit &other) const
{
    return multiplier / other.multiplier;
}

Unit operator*(const Unit &a, const Unit &b)
{
    return Unit(joinedName(QStringLiteral("%1*%2"), a.name, b.name), a.multiplier * b.multiplier,
                combined(a.exponents, b.exponents, 1));
}

Unit operator/(const Unit &a, const Unit &b)
{
    return Unit(joinedName(QStringLiteral("%1/%2"), parenthesised(a.name), parenthesised(b.name)),
                a.multiplier / b.multiplier, combined(a.exponents, b.exponents, -1));
}

Unit operator*(const Unit &unit, double factor)
{
    return Unit(QString(), unit.multiplier * factor, unit.exponents);
}

Unit operator*(double factor, const Unit &unit)
{
    return unit * factor;
}

Unit operator/(const Unit &unit, double divisor)
{
    return Unit(QString(), unit.multiplier / divisor, unit.exponents);
}

Unit operator/(double dividend, const Unit &unit)
{
    return Unit(QString(), dividend / unit.multiplier, combined(Unit::Exponents{}, unit.exponents, -1));
}

bool operator==(const Unit &a, const Unit &b)
{
    return a.exponents == b.exponents && a.multiplier == b.multiplier && a.name == b.name;
}
