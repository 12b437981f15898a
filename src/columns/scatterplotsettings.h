#pragma once

#include "spectra/spectruminfo.h"

#include <QMetaType>
#include <QSet>
#include <QString>

/// A residual of an inversion that a plot may show.
enum class SpectrumParameter { BackErrorMeanSq, BackErrorMeanAvg, SumBackError };

/// The word in a stored setup. It is empty for any other value, which draws nothing.
QString toKey(SpectrumParameter parameter);
/// An unknown word gives the first parameter.
SpectrumParameter spectrumParameterFromKey(const QString &key);
/// The text that the user reads.
QString displayText(SpectrumParameter parameter);

/// The user's choices for a scatter plot. A plain value.
struct ScatterPlotSettings {
    enum Type { Electrometer, Variable, Concentration, Parameter };

    std::int32_t type = Electrometer;
    bool datalabels = false;        ///< a label at the selected record
    bool totalConcentration = true; ///< the fraction is the whole spectrum
    bool showRawCurrents = true;
    bool showProcessedCurrents = true;
    bool showElectrometerNoise = false;
    std::int32_t electrometerNumber = -1;
    QString parameterName;                                                               ///< the variable's name
    SpectMath::DistributionScale fractionScale = SpectMath::DistributionScale::diameter; ///< the unit of the limits
    SpectMath::MobilitySize smallerLimit, largerLimit;                                   ///< in nm and in cm^2/s/V
    SpectMath::ConcentrationType concentrationType = SpectMath::ConcentrationType::number;
    QSet<QString> visibleSpectra; ///< ids
    SpectrumParameter spectrumParameter = SpectrumParameter::BackErrorMeanSq;

    bool usesSpectra() const { return type == Concentration || type == Parameter; }
};

bool operator==(const ScatterPlotSettings &a, const ScatterPlotSettings &b);
inline bool operator!=(const ScatterPlotSettings &a, const ScatterPlotSettings &b)
{
    return !(a == b);
}

Q_DECLARE_METATYPE(ScatterPlotSettings)
