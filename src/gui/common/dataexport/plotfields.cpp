#include "gui/common/dataexport/plotfields.h"

#include "columns/setupkeys.h"
#include "columns/setupvalues.h"
#include "dataexport/fractions.h"
#include "gui/common/dataexport/setupmap.h"

#include <QLocale>

#include <algorithm>

namespace {

namespace Keys = Tsb::SetupKeys;

/// The value of a key, or of the one that it had in older setups.
QVariant valueOf(const QVariantMap &settings, const char *key, const char *olderKey)
{
    const QVariant value = settings.value(QLatin1String(key));
    return value.isValid() ? value : settings.value(QLatin1String(olderKey));
}

/// Null for a number that can't limit a fraction.
QString limitText(const QVariantMap &settings, const char *key)
{
    const auto limit = Tsb::finiteNumber(settings.value(QLatin1String(key)));
    if (!limit || !DataExport::isFractionLimit(*limit))
        return QString();
    return QString::number(*limit, 'g', QLocale::FloatingPointShortest);
}

/// False if the fraction has no two limits.
bool addFraction(QVariantMap &field, const QVariantMap &settings)
{
    const bool isMobility = valueOf(settings, Keys::fractionScale, "fraction").toString() == QLatin1String("mobility");
    const QString low = limitText(settings, isMobility ? Keys::mobilitySmallerLimit : Keys::diameterSmallerLimit);
    const QString high = limitText(settings, isMobility ? Keys::mobilityLargerLimit : Keys::diameterLargerLimit);
    field[QStringLiteral("custom_fractions_enabled")] = true;
    field[QStringLiteral("custom_fractions_data")] = QStringLiteral("%1 %2").arg(low, high);
    field[QStringLiteral("custom_fractions_scale")] =
        isMobility ? QStringLiteral("mobility") : QStringLiteral("diameter");
    return !low.isNull() && !high.isNull();
}

QStringList inOrder(QStringList ids, const QStringList &order)
{
    const auto placeOf = [&order](const QString &id) {
        const int place = order.indexOf(id);
        return place < 0 ? order.size() : place;
    };
    std::stable_sort(ids.begin(), ids.end(),
                     [&](const QString &a, const QString &b) { return placeOf(a) < placeOf(b); });
    return ids;
}

} // namespace

QVariantList plotFields(const QVariant &browserSetup, const QStringList &spectra, QStringList *errors)
{
    QVariantList fields;
    int plots = 0;
    for (const QVariant &entry : browserSetup.toList()) {
        const QVariantMap view = entry.toMap();
        const QVariantMap settings = view.value(QLatin1String(Keys::settings)).toMap();
        ++plots;
        if (view.value(QLatin1String(Keys::type)) != QLatin1String(Keys::scatterPlotView) ||
            settings.value(QLatin1String(Keys::type)) != QLatin1String("fraction"))
            continue;
        const bool isTotal = Tsb::boolOr(settings, Keys::totalConcentration, true);
        QVariantMap field{
            {QStringLiteral("type"), QStringLiteral("concentration")},
            {QStringLiteral("spectra"),
             listOf(inOrder(valueOf(settings, Keys::visibleSpectra, "spectra").toStringList(), spectra))},
            {QStringLiteral("concentration_type"), valueOf(settings, Keys::concentrationType, "concentration")},
            {QStringLiteral("total_concentration_enabled"), isTotal}};
        if (isTotal || addFraction(field, settings))
            fields << field;
        else
            errors->append(
                QStringLiteral("The fraction of plot %1 isn't bounded by two limits above 0: no field was added.")
                    .arg(plots));
    }
    return fields;
}
