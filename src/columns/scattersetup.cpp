#include "columns/scattersetup.h"

#include "columns/setupvalues.h"

#include <QStringList>

#include <array>
#include <cmath>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::MobilitySize;

namespace {

const std::array<const char *, 4> typeKeys = {{"electrometer", "parameter", "fraction", "spectrumparameter"}};

QStringList sortedIds(const QSet<QString> &ids)
{
    QStringList list = ids.values();
    list.sort();
    return list;
}

/// Sets a limit by the number under the key, if it is one that a size or a mobility can have.
template<typename Make>
void readLimit(const QVariantMap &map, const char *key, MobilitySize &limit, Make make)
{
    const auto value = finiteNumber(map.value(QString::fromLatin1(key)));
    if (!value || *value < 0)
        return;
    const MobilitySize read = limitInBothUnits(make(*value));
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
    return result;
}

QVariantMap scatterSetup(const ScatterPlotSettings &settings)
{
    QVariantMap map;
    map["datalabels"] = settings.datalabels;
    map["type"] = QString::fromLatin1(typeKeys.at(std::size_t(settings.type)));
    if (settings.usesSpectra())
        map["visibleSpectra"] = sortedIds(settings.visibleSpectra);
    switch (settings.type) {
    case ScatterPlotSettings::Electrometer:
        map["electrometerNumber"] = settings.electrometerNumber;
        map["showRawCurrents"] = settings.showRawCurrents;
        map["showProcessedCurrents"] = settings.showProcessedCurrents;
        map["showElectrometerNoise"] = settings.showElectrometerNoise;
        break;
    case ScatterPlotSettings::Variable:
        map["parameterName"] = settings.parameterName;
        break;
    case ScatterPlotSettings::Concentration: {
        const bool mobility = settings.fractionScale == DistributionScale::mobility;
        const auto put = [&map](const char *key, double value) {
            if (std::isfinite(value))
                map[QString::fromLatin1(key)] = value;
        };
        map["fractionScale"] = toText(settings.fractionScale);
        map["concentrationType"] = toText(settings.concentrationType);
        map["totalConcentration"] = settings.totalConcentration;
        put(mobility ? "mobilitySmallerLimit" : "diameterSmallerLimit",
            mobility ? settings.smallerLimit.mobility : settings.smallerLimit.diameter);
        put(mobility ? "mobilityLargerLimit" : "diameterLargerLimit",
            mobility ? settings.largerLimit.mobility : settings.largerLimit.diameter);
        break;
    }
    default:
        map["spectrumParameter"] = toKey(settings.spectrumParameter);
        break;
    }
    return map;
}

int scatterTypeFromSetup(const QVariantMap &map, int fallback)
{
    const QString key = map.value("type").toString();
    for (std::size_t i = 0; i < typeKeys.size(); ++i)
        if (key == QLatin1String(typeKeys[i]))
            return int(i);
    return fallback;
}

void readScatterSetup(const QVariantMap &map, ScatterPlotSettings &settings)
{
    const ScatterPlotSettings defaults;
    settings.datalabels = boolOr(map, "datalabels", defaults.datalabels);
    settings.showRawCurrents = boolOr(map, "showRawCurrents", defaults.showRawCurrents);
    settings.showProcessedCurrents = boolOr(map, "showProcessedCurrents", defaults.showProcessedCurrents);
    settings.showElectrometerNoise = boolOr(map, "showElectrometerNoise", defaults.showElectrometerNoise);
    settings.totalConcentration = boolOr(map, "totalConcentration", defaults.totalConcentration);
    if (const auto electrometer = wholeNumber(map.value("electrometerNumber")))
        settings.electrometerNumber = *electrometer;
    if (map.value("parameterName").type() == QVariant::String)
        settings.parameterName = map.value("parameterName").toString();
    settings.fractionScale =
        SpectMath::distributionScaleFromText(map.value("fractionScale").toString(), settings.fractionScale);
    settings.concentrationType =
        SpectMath::concentrationTypeFromText(map.value("concentrationType").toString(), settings.concentrationType);
    if (map.contains("visibleSpectra")) {
        const QStringList ids = map.value("visibleSpectra").toStringList();
        settings.visibleSpectra = QSet<QString>(ids.begin(), ids.end());
    }
    settings.spectrumParameter = spectrumParameterFromKey(map.value("spectrumParameter").toString());

    const SpectMath::MobilityModel model;
    if (settings.fractionScale == DistributionScale::mobility) {
        const auto mobility = [&model](double value) {
            return MobilitySize::fromMobility(model, value, Unit::mobilityCgs);
        };
        readLimit(map, "mobilitySmallerLimit", settings.smallerLimit, mobility);
        readLimit(map, "mobilityLargerLimit", settings.largerLimit, mobility);
    } else {
        const auto diameter = [&model](double value) {
            return MobilitySize::fromDiameter(model, value, Unit::nanometre);
        };
        readLimit(map, "diameterSmallerLimit", settings.smallerLimit, diameter);
        readLimit(map, "diameterLargerLimit", settings.largerLimit, diameter);
    }
}

} // namespace Tsb
