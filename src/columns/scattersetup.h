#pragma once

#include "columns/scatterplotsettings.h"

#include <QVariantMap>

namespace Tsb {

/// The settings of a scatter plot as a stored setup: the keys of its kind and the keys of all kinds.
QVariantMap scatterSetup(const ScatterPlotSettings &settings);
/// Takes the sound values of the map, except the kind; absent switches take the values of new settings. Ids and names
/// that the data don't have are kept.
void readScatterSetup(const QVariantMap &map, ScatterPlotSettings &settings);
/// The kind that the map names, or the fallback.
int scatterTypeFromSetup(const QVariantMap &map, int fallback);

/// The same limit with its diameter in nm and its mobility in cm^2/s/V. 0 in one unit is infinity in the other and
/// means that there is no bound on that side.
SpectMath::MobilitySize limitInBothUnits(const SpectMath::MobilitySize &limit);
/// The limit at that mobility in cm^2/s/V, or on the other scales at that diameter in nm.
SpectMath::MobilitySize fractionLimit(SpectMath::DistributionScale scale, double value);

} // namespace Tsb
