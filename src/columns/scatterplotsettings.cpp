#include "columns/scatterplotsettings.h"

#include "axis/valuescale.h"

#include <QCoreApplication>

#include <array>

namespace {

struct ParameterText {
    const char *key;
    const char *display;
};
constexpr std::array<ParameterText, 3> parameterTexts = {
    {{"BackErrorMeanSq", QT_TRANSLATE_NOOP("ScatterPlot", "Reverse current root mean square error")},
     {"BackErrorMeanAvg", QT_TRANSLATE_NOOP("ScatterPlot", "Reverse current mean abs error")},
     {"SumBackError", QT_TRANSLATE_NOOP("ScatterPlot", "Total current error")}}};

bool isKnown(SpectrumParameter parameter)
{
    return int(parameter) >= 0 && std::size_t(parameter) < parameterTexts.size();
}

bool sameLimit(const SpectMath::MobilitySize &a, const SpectMath::MobilitySize &b)
{
    return Tsb::sameValue(a.diameter, b.diameter) && Tsb::sameValue(a.mobility, b.mobility) &&
           a.diameterUnit == b.diameterUnit && a.mobilityUnit == b.mobilityUnit;
}

} // namespace

QString toKey(SpectrumParameter parameter)
{
    return isKnown(parameter) ? QString::fromLatin1(parameterTexts[std::size_t(parameter)].key) : QString();
}

QString displayText(SpectrumParameter parameter)
{
    return isKnown(parameter)
               ? QCoreApplication::translate("ScatterPlot", parameterTexts[std::size_t(parameter)].display)
               : QString();
}

SpectrumParameter spectrumParameterFromKey(const QString &key)
{
    for (std::size_t i = 0; i < parameterTexts.size(); ++i)
        if (key == QLatin1String(parameterTexts[i].key))
            return SpectrumParameter(i);
    return SpectrumParameter::BackErrorMeanSq;
}

bool operator==(const ScatterPlotSettings &a, const ScatterPlotSettings &b)
{
    return a.type == b.type && a.datalabels == b.datalabels && a.totalConcentration == b.totalConcentration &&
           a.showRawCurrents == b.showRawCurrents && a.showProcessedCurrents == b.showProcessedCurrents &&
           a.showElectrometerNoise == b.showElectrometerNoise && a.electrometerNumber == b.electrometerNumber &&
           a.parameterName == b.parameterName && a.fractionScale == b.fractionScale &&
           sameLimit(a.smallerLimit, b.smallerLimit) && sameLimit(a.largerLimit, b.largerLimit) &&
           a.concentrationType == b.concentrationType && a.visibleSpectra == b.visibleSpectra &&
           a.spectrumParameter == b.spectrumParameter;
}
