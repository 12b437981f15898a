#include "gui/common/recordviews/distribution/plotoptions.h"

#include <cmath>

namespace RecordViews {

namespace {

const QString distributionTypeKey = QStringLiteral("distribution_type");
const QString verticalScaleLogKey = QStringLiteral("vertical_scale_log");
const QString horizontalQuantityAutoKey = QStringLiteral("horizontal_quantity_auto");
const QString horizontalQuantityKey = QStringLiteral("horizontal_quantity");
const QString verticalQuantityKey = QStringLiteral("vertical_quantity");
const QString smoothingCoefKey = QStringLiteral("smoothing_coef");

void takeWidth(const QVariantMap &map, double &width)
{
    bool isNumber = false;
    const double value = map.value(smoothingCoefKey).toDouble(&isNumber);
    if (isNumber && std::isfinite(value) && value >= 0)
        width = value;
}

} // namespace

void takeBool(const QVariantMap &map, const QString &key, bool &value)
{
    const QVariant stored = map.value(key);
    const QString word = stored.toString(); // of a truth value, too
    if (word == QLatin1String("true") || word == QLatin1String("false"))
        value = stored.toBool();
}

QVariantMap PlotOptions::toMap() const
{
    return {{distributionTypeKey, SpectMath::toText(distributionType)},
            {verticalScaleLogKey, verticalScaleLog},
            {horizontalQuantityAutoKey, horizontalQuantityAuto},
            {horizontalQuantityKey, SpectMath::toText(horizontalQuantity)},
            {verticalQuantityKey, SpectMath::toText(verticalQuantity)},
            {smoothingCoefKey, smoothingCoef}};
}

void PlotOptions::takeFrom(const QVariantMap &map)
{
    distributionType = SpectMath::distributionTypeFromText(map.value(distributionTypeKey).toString(), distributionType);
    takeBool(map, verticalScaleLogKey, verticalScaleLog);
    takeBool(map, horizontalQuantityAutoKey, horizontalQuantityAuto);
    horizontalQuantity =
        SpectMath::distributionScaleFromText(map.value(horizontalQuantityKey).toString(), horizontalQuantity);
    const auto quantity =
        SpectMath::concentrationTypeFromText(map.value(verticalQuantityKey).toString(), verticalQuantity);
    if (quantity != SpectMath::ConcentrationType::radius)
        verticalQuantity = quantity;
    takeWidth(map, smoothingCoef);
}

} // namespace RecordViews
