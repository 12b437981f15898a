#pragma once

#include "columns/scatterplotsettings.h"
#include "spectra/spectrum.h"

namespace Tsb {

/// The noise of an electrometer: the square root of its variance, NaN if that is negative.
double electrometerNoise(double variance);
/// The residual; NaN for a failed spectrum.
double parameterOf(const SpectMath::Spectrum &spectrum, SpectrumParameter parameter);
/// The weights of a concentration plot for a description: the whole axis, or between the settings' limits.
RealVector concentrationWeights(const SpectMath::SpectrumInfo &info, const ScatterPlotSettings &settings);

/// The text of the vertical scale. `name` and `unit` are those of the electrometer or variable.
QString scatterScaleLabel(const ScatterPlotSettings &settings, const QString &name, const QString &unit);
/// The unit of a value, as a label tells it; empty if it has none.
QString scatterUnit(const ScatterPlotSettings &settings, const QString &variableUnit);

} // namespace Tsb
