#include "columns/scattervalues.h"

#include <cmath>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;

double slotValue(const RealVector &values, int slot)
{
    return slot >= 0 && std::size_t(slot) < values.size() ? values[std::size_t(slot)] : noValue;
}

double electrometerNoise(const RealVector &currentVariances, int electrometer)
{
    const double variance = slotValue(currentVariances, electrometer);
    return variance >= 0 ? std::sqrt(variance) : noValue;
}

double parameterOf(const SpectMath::Spectrum &spectrum, SpectrumParameter parameter)
{
    if (spectrum.status != 0)
        return noValue;
    switch (parameter) {
    case SpectrumParameter::BackErrorMeanSq:
        return spectrum.currentRmsError;
    case SpectrumParameter::BackErrorMeanAvg:
        return spectrum.currentMeanAbsError;
    case SpectrumParameter::SumBackError:
        return spectrum.currentTotalError;
    }
    return noValue;
}

RealVector concentrationWeights(const SpectMath::SpectrumInfo &info, const ScatterPlotSettings &settings)
{
    return settings.totalConcentration
               ? info.totalWeights(settings.concentrationType)
               : info.fractionWeights(settings.smallerLimit, settings.largerLimit, settings.concentrationType);
}

namespace {

QString concentrationUnitWord(ConcentrationType type)
{
    switch (type) {
    case ConcentrationType::number:
        return QStringLiteral("#");
    case ConcentrationType::radius:
    case ConcentrationType::diameter:
        return QStringLiteral("nm");
    case ConcentrationType::surface:
        return QStringLiteral("nm²");
    case ConcentrationType::volume:
        return QStringLiteral("nm³");
    }
    return QString();
}

QString fractionLabel(const ScatterPlotSettings &settings)
{
    const bool mobility = settings.fractionScale == DistributionScale::mobility;
    const auto limit = [mobility](const SpectMath::MobilitySize &size) {
        const double value = mobility ? size.mobility : size.diameter;
        return std::isinf(value) ? QStringLiteral("∞") : QString::number(value);
    };
    return limit(settings.smallerLimit) + QLatin1String(" - ") + limit(settings.largerLimit) + QLatin1Char(' ') +
           (mobility ? QStringLiteral("cm²/V/s") : QStringLiteral("nm"));
}

} // namespace

QString scatterScaleLabel(const ScatterPlotSettings &settings, const QString &name, const QString &unit)
{
    switch (settings.type) {
    case ScatterPlotSettings::Electrometer:
        return QStringLiteral("Elm. ") + name + (settings.showElectrometerNoise ? QStringLiteral(" noise") : QString());
    case ScatterPlotSettings::Variable:
        return unit.isEmpty() ? name : name + QLatin1String(" (") + unit + QLatin1Char(')');
    case ScatterPlotSettings::Concentration:
        return (settings.totalConcentration ? QStringLiteral("Total concentration") : fractionLabel(settings)) +
               QLatin1String("\n(") + scatterUnit(settings, QString()) + QLatin1Char(')');
    default:
        return displayText(settings.spectrumParameter);
    }
}

QString scatterUnit(const ScatterPlotSettings &settings, const QString &variableUnit)
{
    switch (settings.type) {
    case ScatterPlotSettings::Variable:
        return variableUnit;
    case ScatterPlotSettings::Concentration:
        return concentrationUnitWord(settings.concentrationType) + QStringLiteral("/cm³");
    default:
        return QStringLiteral("fA");
    }
}

} // namespace Tsb
