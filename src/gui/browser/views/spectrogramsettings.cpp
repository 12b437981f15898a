#include "columns/setupkeys.h"
#include "columns/setupvalues.h"
#include "gui/browser/controls/colorlimits.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/views/spectrogramview.h"

#include <QAction>
#include <QDoubleSpinBox>

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
    map.insert(SetupKeys::height, minimumHeight() == maximumHeight() ? minimumHeight() : height());
    map.insert(SetupKeys::spectra, sortedVisibleSpectra());
    if (m_limits->areSet()) {
        map.insert(SetupKeys::colorLower, m_limits->lower());
        map.insert(SetupKeys::colorUpper, m_limits->upper());
    }
    map.insert(SetupKeys::autoFillGaps, m_fillGapsAction->isChecked());
    map.insert(SetupKeys::smoothingEnabled, m_smoothingEnabled);
    map.insert(SetupKeys::smoothingCoef, m_smoothingSpinBox->value());
    map.insert(SetupKeys::colormap, m_colormapName);
    map.insert(SetupKeys::whiteBackground, m_whiteBackground);
    return map;
}

void SpectrogramView::setSettings(const QVariant &settings)
{
    if (settings.type() != QVariant::Map)
        return;
    const QVariantMap map = settings.toMap();
    restoreHeight(map.value(SetupKeys::height));

    const QStringList ids = map.value(SetupKeys::spectra).toStringList();
    m_visibleSpectra = QSet<QString>(ids.begin(), ids.end());
    m_selectionWidget->setSelectedSpectra(m_visibleSpectra);
    updateRows();

    const auto limits = finiteRange(map, SetupKeys::colorLower, SetupKeys::colorUpper);
    setScaleGiven(limits && m_limits->set(limits->first, limits->second));
    m_fillGapsAction->setChecked(boolOr(map, SetupKeys::autoFillGaps, true));
    m_smoothingSpinBox->setValue(finiteNumber(map.value(SetupKeys::smoothingCoef)).value_or(0.0));
    setSmoothingEnabled(boolOr(map, SetupKeys::smoothingEnabled, false));

    // A setup that doesn't name the background is dark, though a new view is light.
    const QVariant name = map.value(SetupKeys::colormap, QStringLiteral("jet"));
    setColormap(name.type() == QVariant::String ? name.toString() : m_colormapName,
                boolOr(map, SetupKeys::whiteBackground, false));
}

} // namespace Tsb
