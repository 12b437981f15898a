#include "dataexport/fractions.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace DataExport {

namespace {

constexpr int mostPerDecade = 100;
constexpr int mostToldWords = 20;
constexpr double leastPart = 0.25; // of a piece

} // namespace

bool isFractionLimit(double value)
{
    return std::isfinite(value) && value > 0;
}

const Unit &limitUnit(DistributionScale scale)
{
    return scale == DistributionScale::mobility ? Unit::mobilityCgs : Unit::nanometre;
}

std::vector<double> gridIn(const SpectMath::SpectrumInfo &info, DistributionScale scale)
{
    const RealVector points = info.points(scale);
    const Unit &unit = scale == DistributionScale::mobility ? info.mobilityUnit : info.sizeUnit;
    // A grid in the unit of limits keeps its very numbers.
    const double factor = unit.multiplier == limitUnit(scale).multiplier ? 1.0 : unit.factorTo(limitUnit(scale));
    std::vector<double> grid(points.begin(), points.end());
    for (double &point : grid)
        point *= factor;
    return grid;
}

QString DecadeFractions::fault() const
{
    if (perDecade < 1 || perDecade > mostPerDecade)
        return QStringLiteral("Invalid number of fractions per decade: %1.").arg(perDecade);
    if (!hasRange || (isFractionLimit(from) && isFractionLimit(to) && from < to))
        return QString();
    return QStringLiteral("Invalid range of decade fractions: %1 to %2.")
        .arg(QString::number(from), QString::number(to));
}

Limits DecadeFractions::range(const std::vector<double> &grid) const
{
    const Limits none(noValue, noValue);
    if (grid.size() < 2 || !std::all_of(grid.begin(), grid.end(), isFractionLimit))
        return none;
    if (hasRange)
        return {from, to};
    const auto ends = std::minmax_element(grid.begin(), grid.end());
    const Limits decades(std::pow(10, std::floor(std::log10(*ends.first))),
                         std::pow(10, std::ceil(std::log10(*ends.second))));
    return isFractionLimit(decades.first) && isFractionLimit(decades.second) ? decades : none;
}

std::vector<Limits> DecadeFractions::pieces(const std::vector<double> &grid) const
{
    std::vector<Limits> pieces;
    const Limits span = range(grid);
    if (!fault().isNull() || std::isnan(span.first))
        return pieces;
    const auto ends = std::minmax_element(grid.begin(), grid.end());
    const double leastRatio = std::pow(10, leastPart / perDecade);
    double low = span.first;
    for (int k = 1; low < span.second; ++k) {
        const double high = span.first * std::pow(10, double(k) / perDecade);
        const Limits piece(std::max(*ends.first, low), std::min(*ends.second, high));
        if (*ends.first < high && piece.second / piece.first > leastRatio)
            pieces.push_back(piece);
        low = high;
    }
    return pieces;
}

std::vector<Limits> customFractions(const QString &text, QStringList *errors)
{
    std::vector<Limits> fractions;
    int badWords = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        double before = 0;
        const QStringList words = line.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString &word : words) {
            bool isNumber = false;
            const double limit = word.toDouble(&isNumber);
            if (!isNumber || !isFractionLimit(limit)) {
                if (++badWords <= mostToldWords)
                    errors->append(QStringLiteral("Invalid custom limit '%1'.").arg(word));
                continue;
            }
            if (before > 0)
                fractions.emplace_back(before, limit);
            before = limit;
        }
    }
    if (badWords > mostToldWords)
        errors->append(QStringLiteral("%1 more invalid custom limits.").arg(badWords - mostToldWords));
    return fractions;
}

RealVector weightsBetween(const SpectMath::SpectrumInfo &info, const Limits &limits, DistributionScale scale,
                          SpectMath::ConcentrationType type)
{
    const auto limit = [&](double value) {
        if (scale != DistributionScale::mobility)
            return SpectMath::MobilitySize::fromDiameter(info.model, value, limitUnit(scale));
        auto size = SpectMath::MobilitySize::fromMobility(info.model, value, limitUnit(scale));
        if (std::isnan(size.diameter)) // NaN would stand for an end of the grid
            size.diameter = std::numeric_limits<double>::infinity();
        return size;
    };
    return info.fractionWeights(limit(limits.first), limit(limits.second), type);
}

} // namespace DataExport
