#pragma once

#include "spectra/spectruminfo.h"

#include <QVariantMap>

namespace RecordViews {

/// How spectra are shown, for all plots of a view.
struct PlotOptions {
    SpectMath::DistributionType distributionType = SpectMath::DistributionType::density;
    bool verticalScaleLog = false;
    bool horizontalQuantityAuto = true; ///< each spectrum on its native axis, else on horizontalQuantity
    SpectMath::DistributionScale horizontalQuantity = SpectMath::DistributionScale::diameter;
    SpectMath::ConcentrationType verticalQuantity = SpectMath::ConcentrationType::number;
    double smoothingCoef = 0; ///< width of the display's smoothing in points, 0 for none

    /// Under the keys "distribution_type", "vertical_scale_log", "horizontal_quantity_auto", "horizontal_quantity",
    /// "vertical_quantity" and "smoothing_coef", enumerations by their words.
    QVariantMap toMap() const;
    /// Takes over what the map holds; keys that are missing or make no sense, and a
    /// vertical radius, which isn't shown, leave their field as it is.
    void takeFrom(const QVariantMap &map);
};

/// Takes over a truth value of a map; leaves it where there is none.
void takeBool(const QVariantMap &map, const QString &key, bool &value);

} // namespace RecordViews
