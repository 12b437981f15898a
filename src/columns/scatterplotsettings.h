#pragma once

#include "spectra/spectruminfo.h"

#include <QMetaType>
#include <QSet>
#include <QString>

/// Which residual of an inversion is drawn.
enum class SpectrumParameter { BackErrorMeanSq, BackErrorMeanAvg, SumBackError };

/// The word in a stored setup; empty for a value that is none of these, which draws nothing.
QString toKey(SpectrumParameter parameter);
/// An unknown word is the first parameter.
SpectrumParameter spectrumParameterFromKey(const QString &key);
/// What the user reads.
QString displayText(SpectrumParameter parameter);

/// All that tells a scatter plot what to draw. A plain value.
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
    SpectMath::DistributionScale fractionScale = SpectMath::DistributionScale::diameter; ///< how the limits are read
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
