#include "columns/scattersetup.h"

#include "columns/setupkeys.h"
#include "columns/setupvalues.h"

#include <QStringList>

#include <array>
#include <cmath>
#include <limits>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::MobilitySize;

namespace {

constexpr int longestName = 10'000; ///< of a variable: one of megabytes would take seconds to lay out

const std::array<const char *, 4> typeKeys = {{"electrometer", "parameter", "fraction", "spectrumparameter"}};

QStringList sortedIds(const QSet<QString> &ids)
{
    QStringList list = ids.values();
    list.sort();
    return list;
}

/// One limit's keys by the unit that its number is in.
struct LimitKeys {
    const char *diameter, *mobility;

    QString in(DistributionScale scale) const
    {
        return QLatin1String(scale == DistributionScale::mobility ? mobility : diameter);
    }
};
constexpr LimitKeys smallerKeys = {SetupKeys::diameterSmallerLimit, SetupKeys::mobilitySmallerLimit};
constexpr LimitKeys largerKeys = {SetupKeys::diameterLargerLimit, SetupKeys::mobilityLargerLimit};

DistributionScale otherUnit(DistributionScale scale)
{
    return scale == DistributionScale::mobility ? DistributionScale::diameter : DistributionScale::mobility;
}

/// A limit that is no bound in the scale's unit is written in the other, where it is 0: files hold no infinity.
void writeLimit(QVariantMap &map, const LimitKeys &keys, DistributionScale scale, const MobilitySize &limit)
{
    const double value = scale == DistributionScale::mobility ? limit.mobility : limit.diameter;
    if (std::isfinite(value))
        map[keys.in(scale)] = value;
    else if (std::isinf(value))
        map[keys.in(otherUnit(scale))] = 0.0;
}

/// Sets a limit by the number under its key, if it is one that a size or a mobility can have.
void readLimit(const QVariantMap &map, const LimitKeys &keys, DistributionScale scale, MobilitySize &limit)
{
    const auto value = finiteNumber(map.value(keys.in(scale)));
    if (!value && finiteNumber(map.value(keys.in(otherUnit(scale)))) == 0.0)
        limit = fractionLimit(otherUnit(scale), 0);
    if (!value || *value < 0)
        return;
    const MobilitySize read = fractionLimit(scale, *value);
    if (!std::isnan(read.diameter) && !std::isnan(read.mobility))
        limit = read;
}

} // namespace

MobilitySize limitInBothUnits(const MobilitySize &limit)
{
    MobilitySize result;
    result.diameter = limit.diameter * limit.diameterUnit.factorTo(Unit::nanometre);
    result.mobility = limit.mobility * limit.mobilityUnit.factorTo(Unit::mobilityCgs);
    result.diameterUnit = Unit::nanometre;
    result.mobilityUnit = Unit::mobilityCgs;
    if (result.mobility == 0) // that of no particle, however large: a limit of 0 leaves none out
        result.diameter = std::numeric_limits<double>::infinity();
    return result;
}

MobilitySize fractionLimit(DistributionScale scale, double value)
{
    const SpectMath::MobilityModel model;
    return limitInBothUnits(scale == DistributionScale::mobility
                                ? MobilitySize::fromMobility(model, value, Unit::mobilityCgs)
                                : MobilitySize::fromDiameter(model, value, Unit::nanometre));
}

QVariantMap scatterSetup(const ScatterPlotSettings &settings)
{
    QVariantMap map;
    map[SetupKeys::datalabels] = settings.datalabels;
    map[SetupKeys::type] = QString::fromLatin1(typeKeys.at(std::size_t(settings.type)));
    if (settings.usesSpectra())
        map[SetupKeys::visibleSpectra] = sortedIds(settings.visibleSpectra);
    switch (settings.type) {
    case ScatterPlotSettings::Electrometer:
        map[SetupKeys::electrometerNumber] = settings.electrometerNumber;
        map[SetupKeys::showRawCurrents] = settings.showRawCurrents;
        map[SetupKeys::showProcessedCurrents] = settings.showProcessedCurrents;
        map[SetupKeys::showElectrometerNoise] = settings.showElectrometerNoise;
        break;
    case ScatterPlotSettings::Variable:
        map[SetupKeys::parameterName] = settings.parameterName;
        break;
    case ScatterPlotSettings::Concentration:
        map[SetupKeys::fractionScale] = toText(settings.fractionScale);
        map[SetupKeys::concentrationType] = toText(settings.concentrationType);
        map[SetupKeys::totalConcentration] = settings.totalConcentration;
        writeLimit(map, smallerKeys, settings.fractionScale, settings.smallerLimit);
        writeLimit(map, largerKeys, settings.fractionScale, settings.largerLimit);
        break;
    default:
        map[SetupKeys::spectrumParameter] = toKey(settings.spectrumParameter);
        break;
    }
    return map;
}

int scatterTypeFromSetup(const QVariantMap &map, int fallback)
{
    const QString key = map.value(SetupKeys::type).toString();
    for (std::size_t i = 0; i < typeKeys.size(); ++i)
        if (key == QLatin1String(typeKeys[i]))
            return int(i);
    return fallback;
}

void readScatterSetup(const QVariantMap &map, ScatterPlotSettings &settings)
{
    const ScatterPlotSettings defaults;
    settings.datalabels = boolOr(map, SetupKeys::datalabels, defaults.datalabels);
    settings.showRawCurrents = boolOr(map, SetupKeys::showRawCurrents, defaults.showRawCurrents);
    settings.showProcessedCurrents = boolOr(map, SetupKeys::showProcessedCurrents, defaults.showProcessedCurrents);
    settings.showElectrometerNoise = boolOr(map, SetupKeys::showElectrometerNoise, defaults.showElectrometerNoise);
    settings.totalConcentration = boolOr(map, SetupKeys::totalConcentration, defaults.totalConcentration);
    if (const auto electrometer = wholeNumber(map.value(SetupKeys::electrometerNumber)))
        settings.electrometerNumber = *electrometer;
    const QVariant name = map.value(SetupKeys::parameterName);
    if (name.type() == QVariant::String && name.toString().size() <= longestName)
        settings.parameterName = name.toString();
    settings.fractionScale =
        SpectMath::distributionScaleFromText(map.value(SetupKeys::fractionScale).toString(), settings.fractionScale);
    settings.concentrationType = SpectMath::concentrationTypeFromText(
        map.value(SetupKeys::concentrationType).toString(), settings.concentrationType);
    if (map.contains(SetupKeys::visibleSpectra)) {
        const QStringList ids = map.value(SetupKeys::visibleSpectra).toStringList();
        settings.visibleSpectra = QSet<QString>(ids.begin(), ids.end());
    }
    settings.spectrumParameter = spectrumParameterFromKey(map.value(SetupKeys::spectrumParameter).toString());

    readLimit(map, smallerKeys, settings.fractionScale, settings.smallerLimit);
    readLimit(map, largerKeys, settings.fractionScale, settings.largerLimit);
}

} // namespace Tsb
