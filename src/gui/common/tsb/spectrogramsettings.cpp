#include "gui/common/tsb/expspinbox.h"
#include "gui/common/tsb/spectraselectionwidget.h"
#include "gui/common/tsb/spectrogramview.h"

#include <QAction>
#include <QDoubleSpinBox>

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr double leastHeight = 16;
constexpr double greatestHeight = 4096;

/// The finite number under a key; not a number if there is none of that kind.
double numberIn(const QVariantMap &map, const char *key)
{
    const QVariant value = map.value(QLatin1String(key));
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return std::isfinite(value.toDouble()) ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
    default:
        return std::numeric_limits<double>::quiet_NaN();
    }
}

bool boolIn(const QVariantMap &map, const char *key, bool fallback)
{
    const QVariant value = map.value(QLatin1String(key));
    return value.type() == QVariant::Bool ? value.toBool() : fallback;
}

} // namespace

QStringList SpectrogramView::sortedVisibleSpectra() const
{
    QStringList ids = m_visibleSpectra.values();
    ids.sort();
    return ids;
}

QVariant SpectrogramView::settings() const
{
    QVariantMap map;
    // The height that was set counts, not the one that a layout has still to give.
    map.insert(QStringLiteral("height"), minimumHeight() == maximumHeight() ? minimumHeight() : height());
    map.insert(QStringLiteral("spectra"), sortedVisibleSpectra());
    if (!std::isnan(m_colorLower)) {
        map.insert(QStringLiteral("colorLower"), m_colorLower);
        map.insert(QStringLiteral("colorUpper"), m_colorUpper);
    }
    map.insert(QStringLiteral("autoFillGaps"), m_fillGapsAction->isChecked());
    map.insert(QStringLiteral("smoothingEnabled"), m_smoothingEnabled);
    map.insert(QStringLiteral("smoothingCoef"), m_smoothingSpinBox->value());
    map.insert(QStringLiteral("colormap"), m_colormapName);
    map.insert(QStringLiteral("whiteBackground"), m_whiteBackground);
    return map;
}

void SpectrogramView::setSettings(const QVariant &settings)
{
    if (settings.type() != QVariant::Map)
        return;
    const QVariantMap map = settings.toMap();
    const double height = numberIn(map, "height");
    if (height > 0)
        setFixedHeight(int(std::clamp(height, leastHeight, greatestHeight)));

    const QStringList ids = map.value(QStringLiteral("spectra")).toStringList();
    m_visibleSpectra = QSet<QString>(ids.begin(), ids.end());
    m_selectionWidget->setSelectedSpectra(m_visibleSpectra);
    updateRows();

    const double lower = numberIn(map, "colorLower");
    const double upper = numberIn(map, "colorUpper");
    if (!std::isnan(lower) && !std::isnan(upper))
        setColorLimits(lower, upper);
    m_fillGapsAction->setChecked(boolIn(map, "autoFillGaps", true));
    const double smoothing = numberIn(map, "smoothingCoef");
    m_smoothingSpinBox->setValue(std::isnan(smoothing) ? 0.0 : smoothing);
    setSmoothingEnabled(boolIn(map, "smoothingEnabled", false));

    // A setup that doesn't name the background is dark, though a new view is light.
    const QVariant name = map.value(QStringLiteral("colormap"), QStringLiteral("jet"));
    setColormap(name.type() == QVariant::String ? name.toString() : m_colormapName,
                boolIn(map, "whiteBackground", false));
}

} // namespace Tsb
