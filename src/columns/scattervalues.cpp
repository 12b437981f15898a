#include "columns/scattervalues.h"

#include <QCoreApplication>

#include <cmath>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;

double electrometerNoise(double variance)
{
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

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ScatterPlot)
};

QString concentrationLabel(const ScatterPlotSettings &settings)
{
    const QString word = concentrationUnitWord(settings.concentrationType);
    if (settings.totalConcentration)
        return Texts::tr("Total concentration\n(%1/cm³)").arg(word);
    const bool mobility = settings.fractionScale == DistributionScale::mobility;
    const auto limit = [mobility](const SpectMath::MobilitySize &size) {
        const double value = mobility ? size.mobility : size.diameter;
        return std::isinf(value) ? QStringLiteral("∞") : QString::number(value);
    };
    return Texts::tr("%1 - %2 %3\n(%4/cm³)")
        .arg(limit(settings.smallerLimit), limit(settings.largerLimit),
             mobility ? QStringLiteral("cm²/V/s") : QStringLiteral("nm"), word);
}

} // namespace

QString scatterScaleLabel(const ScatterPlotSettings &settings, const QString &name, const QString &unit)
{
    switch (settings.type) {
    case ScatterPlotSettings::Electrometer:
        return (settings.showElectrometerNoise ? Texts::tr("Elm. %1 noise") : Texts::tr("Elm. %1")).arg(name);
    case ScatterPlotSettings::Variable:
        return unit.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, unit);
    case ScatterPlotSettings::Concentration:
        return concentrationLabel(settings);
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
