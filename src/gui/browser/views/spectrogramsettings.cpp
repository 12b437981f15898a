#include "columns/setupvalues.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/views/spectrogramview.h"

#include <QAction>
#include <QDoubleSpinBox>

#include <cmath>

namespace Tsb {

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
    restoreHeight(map.value(QStringLiteral("height")));

    const QStringList ids = map.value(QStringLiteral("spectra")).toStringList();
    m_visibleSpectra = QSet<QString>(ids.begin(), ids.end());
    m_selectionWidget->setSelectedSpectra(m_visibleSpectra);
    updateRows();

    const auto lower = finiteNumber(map.value(QStringLiteral("colorLower")));
    const auto upper = finiteNumber(map.value(QStringLiteral("colorUpper")));
    if (lower && upper)
        setColorLimits(*lower, *upper);
    m_fillGapsAction->setChecked(boolOr(map, "autoFillGaps", true));
    m_smoothingSpinBox->setValue(finiteNumber(map.value(QStringLiteral("smoothingCoef"))).value_or(0.0));
    setSmoothingEnabled(boolOr(map, "smoothingEnabled", false));

    // A setup that doesn't name the background is dark, though a new view is light.
    const QVariant name = map.value(QStringLiteral("colormap"), QStringLiteral("jet"));
    setColormap(name.type() == QVariant::String ? name.toString() : m_colormapName,
                boolOr(map, "whiteBackground", false));
}

} // namespace Tsb
