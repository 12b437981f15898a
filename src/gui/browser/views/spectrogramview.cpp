#include "gui/browser/views/spectrogramview.h"

#include "axis/spectrogramaxis.h"
#include "columns/scattervalues.h"
#include "columns/setupkeys.h"
#include "columns/setupvalues.h"
#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/colormapmenu.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/drawing/colorfit.h"
#include "gui/browser/views/colorlock.h"
#include "gui/browser/views/spectrogramcontrols.h"

#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr int initialHeight = 120;
constexpr int minimumTargetHeight = 32;
constexpr double markOpacity = 0.3;
constexpr double farthestLimit = 300; ///< decades; 10 to the power of a limit stays a number

QString toolTipOf(const QString &name, const QString &inverter)
{
    if (inverter.isEmpty())
        return plainToolTip(SpectrogramView::tr("Distribution: %1").arg(name));
    return SpectrogramView::tr("Distribution: %1").arg(name.toHtmlEscaped()) +
           SpectrogramView::tr("<br>Inverter: %2").replace(QLatin1String("%2"), inverter.toHtmlEscaped());
}

} // namespace

SpectrogramView::SpectrogramView(QWidget *parent)
    : MultiPlotView(parent), m_limits(new ColorLimits(this, farthestLimit)),
      m_controls(new SpectrogramControls(*m_limits, this)), m_selectionWidget(new SpectraSelectionWidget(true, this))
{
    setFixedHeight(initialHeight);
    addSeparator();
    addActions(m_controls->options());
    auto *noSpectra = new QLabel(tr("No spectra"), this);
    noSpectra->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    noSpectra->setAlignment(Qt::AlignCenter);
    noSpectra->setEnabled(false);
    m_noSpectraFrame = noSpectra;
    auto *resizer = new Resizer(this, this);
    resizer->setMinimumTargetHeight(minimumTargetHeight);
    viewLayout()->insertRow(0, m_controls, nullptr);
    viewLayout()->insertRow(1, nullptr, m_noSpectraFrame);
    viewLayout()->insertRow(2, resizer, nullptr);
    connectControls();
    restoreColormap();
}

SpectrogramView::~SpectrogramView()
{
    lockColors(false);
}

void SpectrogramView::connectControls()
{
    // The list of spectra
    connect(m_controls->spectraButton(), &QToolButton::toggled, this, &SpectrogramView::showSettingsForm);
    connect(m_selectionWidget, &SpectraSelectionWidget::visibilityChanged, m_controls->spectraButton(),
            &QToolButton::setChecked);
    connect(m_selectionWidget, &SpectraSelectionWidget::selectionChanged, this, &SpectrogramView::chooseSpectra);
    // The options
    connect(m_controls, &SpectrogramControls::fitRequested, this, &SpectrogramView::fitScale);
    connect(m_controls, &SpectrogramControls::fillGapsChanged, this,
            [this](bool on) { forEachPlot([on](SpectrogramPlot &plot) { plot.setFillGaps(on); }); });
    connect(m_controls, &SpectrogramControls::markZerosChanged, this,
            [this](bool on) { forEachPlot([on](SpectrogramPlot &plot) { plot.setMarkZeros(on); }); });
    connect(m_controls, &SpectrogramControls::lockColorsChanged, this, &SpectrogramView::lockColors);
    connect(m_controls, &SpectrogramControls::smoothingChanged, this, &SpectrogramView::smoothingChanged);
    connect(m_controls->colormaps(), &ColormapMenu::chosen, this, &SpectrogramView::restoreColormap);
    connect(m_controls->colormaps(), &ColormapMenu::previewed, this, &SpectrogramView::showColors);
    connect(m_controls->colormaps(), &ColormapMenu::previewEnded, this, &SpectrogramView::restoreColormap);
    // The colours' limits
    connect(m_limits, &ColorLimits::changed, this, &SpectrogramView::requestColorLimits);
    connect(m_controls->colorbar(), &Colorbar::mouseMarkedValue, this, &SpectrogramView::highlightValue);
}

void SpectrogramView::showSettingsForm(bool visible)
{
    m_controls->spectraButton()->setChecked(visible);
    if (visible == m_selectionWidget->isVisible())
        return;
    if (visible)
        m_selectionWidget->popUpBelow(m_controls->spectraButton());
    else
        m_selectionWidget->hide();
}

// ---- spectra and rows

void SpectrogramView::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    else if (uiInfo) // a new view
        setColormap(uiInfo->defaultColormap(), isWhiteBackground());
    m_uiInfo = std::move(uiInfo);
    m_selectionWidget->setUiInfo(m_uiInfo);
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &SpectrogramView::updateRows);
    updateRows();
}

void SpectrogramView::setVisibleSpectra(QSet<QString> ids)
{
    if (ids == m_visibleSpectra)
        return;
    m_visibleSpectra = ids;
    m_selectionWidget->setSelectedSpectra(ids);
    updateRows();
}

void SpectrogramView::chooseSpectra(const QSet<QString> &ids)
{
    if (ids == m_visibleSpectra)
        return;
    setVisibleSpectra(ids);
    if (!m_limits->areSet())
        fitScale();
}

void SpectrogramView::updateRows()
{
    viewLayout()->setEnabled(false);
    int used = 0;
    if (m_uiInfo) {
        for (const auto &info : m_uiInfo->spectrumInfos()) {
            if (!m_visibleSpectra.contains(info->hash))
                continue;
            if (used == rows().size())
                appendRow();
            configureRow(rows()[used++], info);
        }
    }
    while (rows().size() > used)
        removeLastRow();
    m_noSpectraFrame->setVisible(rows().isEmpty());
    viewLayout()->setEnabled(true);
    activateLayout();
}

void SpectrogramView::appendRow()
{
    auto *plot = new SpectrogramPlot(this);
    plot->setMouseTracking(true);
    auto *scale = new VerticalScaleWidget(this);
    scale->setReadOnly(true);
    scale->setMinMax(0, 1, true);
    scale->setAppearLog(true);
    connect(plot, &Plot::valueCursorChanged, scale, &VerticalScaleWidget::showCursor);
    connect(this, &SpectrogramView::requestColorLimits, plot, &SpectrogramPlot::setColorLimits);
    connect(this, &SpectrogramView::smoothingChanged, plot, &SpectrogramPlot::setSmoothingCoef);
    plot->setFillGaps(m_controls->fillsGaps());
    plot->setMarkZeros(m_controls->marksZeros());
    plot->setSmoothingCoef(m_controls->usedSmoothing());
    plot->setColormap(m_controls->colormaps()->map());
    plot->setWhiteBackground(isWhiteBackground());
    plot->setColorLimits(m_limits->lower(), m_limits->upper());
    addRow(scale, plot);
    viewLayout()->insertRow(viewLayout()->rowCount() - 1, scale, plot);
    scale->show();
    plot->show();
}

void SpectrogramView::removeLastRow()
{
    const Row row = takeLastRow();
    viewLayout()->removeRow(viewLayout()->rowCount() - 2); // the one above the grip
    delete row.plot;
    delete row.scale;
}

void SpectrogramView::configureRow(const Row &row, const SpectMath::SpectrumInfoPointer &info)
{
    const auto axis = spectrogramAxis(*info);
    if (!axis) {
        row.plot->setSpectrum(nullptr, false);
        row.scale->setLabel(tr("Invalid spectrum"));
        row.plot->setAccessibleName(row.scale->label());
        row.scale->setToolTip(row.scale->label());
        row.scale->setIcon(QPixmap());
        row.scale->setMinMax(0, 1, true);
        return;
    }
    const QString name = m_uiInfo->spectrumName(info.get());
    row.plot->setSpectrum(info, axis->reversedRows);
    row.plot->setAccessibleName(tr("Spectrogram: %1").arg(name));
    row.scale->setMinMax(axis->bottom, axis->top, true);
    row.scale->setLabel(QStringLiteral("%1\n(%2)").arg(name, info->concentrationUnit.toString()));
    const QColor color = m_uiInfo->spectrumColor(info.get());
    row.scale->setIcon(color.isValid() ? spectrumColorPixmap(color) : QPixmap());
    row.scale->setToolTip(toolTipOf(name, info->inverterName));
}

// ---- colours

const QString &SpectrogramView::colormapName() const
{
    return m_controls->colormaps()->mapName();
}

bool SpectrogramView::isWhiteBackground() const
{
    return m_controls->colormaps()->isWhite();
}

void SpectrogramView::setColormap(const QString &name, bool white)
{
    m_controls->colormaps()->choose(name, white);
}

void SpectrogramView::showColors(const Colormap::Map &colormap, bool white)
{
    forEachPlot([&](SpectrogramPlot &plot) {
        plot.setColormap(colormap);
        plot.setWhiteBackground(white);
    });
}

void SpectrogramView::restoreColormap()
{
    showColors(m_controls->colormaps()->map(), isWhiteBackground());
    m_controls->colorbar()->setColormap(m_controls->colormaps()->map());
}

void SpectrogramView::highlightValue(double value)
{
    Colormap::Map map = m_controls->colormaps()->map();
    if (!std::isnan(value)) {
        const double threshold = (value - m_limits->lower()) / (m_limits->upper() - m_limits->lower());
        map = Colormap::ThresholdColormap(map, threshold, markOpacity);
    }
    showColors(map, isWhiteBackground());
    m_controls->colorbar()->setColormap(map);
    m_controls->colorbar()->markValue(value);
}

void SpectrogramView::fitScale()
{
    const auto limits = limitsInSight();
    if (limits && m_limits->set(limits->first, limits->second))
        m_fitted.fit(colorRange());
}

void SpectrogramView::growScale()
{
    if (!m_limits->areSet())
        return fitScale();
    if (!m_fitted.isUntouched(colorRange()))
        return; // counting all values in sight takes its time
    const auto seen = limitsInSight();
    const auto grown = seen ? FittedScale::grown(colorRange(), *seen, 0) : std::nullopt;
    if (grown && m_limits->set(grown->first, grown->second))
        m_fitted.fit(colorRange());
}

FittedScale::Range SpectrogramView::colorRange() const
{
    return {m_limits->lower(), m_limits->upper()};
}

/// None where no value is in sight. Of all views whose colors are locked, they are common.
std::optional<std::pair<double, double>> SpectrogramView::limitsInSight()
{
    DecadeHistogram histogram;
    if (m_colorLock && m_controls->locksColors())
        m_colorLock->addVisibleValuesTo(histogram);
    else
        addVisibleValuesTo(histogram);
    return colorLimits(histogram);
}

void SpectrogramView::addVisibleValuesTo(DecadeHistogram &histogram)
{
    forEachPlot([&](SpectrogramPlot &plot) { plot.addVisibleValuesTo(histogram); });
}

void SpectrogramView::setColorLock(ColorLock *lock)
{
    lockColors(false);
    m_colorLock = lock;
    lockColors(m_controls->locksColors());
}

void SpectrogramView::lockColors(bool on)
{
    if (m_colorLock && on)
        m_colorLock->join(m_limits, [this](DecadeHistogram &histogram) { addVisibleValuesTo(histogram); });
    else if (m_colorLock)
        m_colorLock->leave(m_limits);
}

double SpectrogramView::colorLower() const
{
    return m_limits->areSet() ? m_limits->lower() : noValue;
}

double SpectrogramView::colorUpper() const
{
    return m_limits->areSet() ? m_limits->upper() : noValue;
}

void SpectrogramView::setColorLimits(double lower, double upper)
{
    m_limits->set(lower, upper);
}

void SpectrogramView::lowSpinBoxChanged(double value)
{
    m_limits->setLowerValue(value);
}

void SpectrogramView::highSpinBoxChanged(double value)
{
    m_limits->setUpperValue(value);
}

void SpectrogramView::setSmoothingEnabled(bool on)
{
    m_controls->setSmoothing(on);
}

QVector<CurveFigures> SpectrogramView::measure(const MeasuringCursors::Times &cursors)
{
    ScatterPlotSettings total; // as a plot of total concentrations is named
    total.type = ScatterPlotSettings::Concentration;
    const QString label = scatterScaleLabel(total, QString(), QString()).section(QLatin1Char('\n'), 0, 0);
    QVector<CurveFigures> curves;
    forEachPlot([&](SpectrogramPlot &plot) {
        for (CurveFigures &curve : plot.measure(cursors)) {
            curve.name = QStringLiteral("%1: %2").arg(m_uiInfo->spectrumName(plot.spectrumInfo().get()), label);
            curve.unit = scatterUnit(total, QString());
            curves.append(curve);
        }
    });
    return curves;
}

// ---- the stored setup

QVariant SpectrogramView::settings() const
{
    QStringList ids = m_visibleSpectra.values();
    ids.sort();
    QVariantMap map;
    // The height that was set counts, not the one that a layout has still to give.
    map[SetupKeys::height] = minimumHeight() == maximumHeight() ? minimumHeight() : height();
    map[SetupKeys::spectra] = ids;
    if (m_limits->areSet()) {
        map[SetupKeys::colorLower] = m_limits->lower();
        map[SetupKeys::colorUpper] = m_limits->upper();
        m_fitted.store(colorRange(), &map);
    }
    map[SetupKeys::autoFillGaps] = m_controls->fillsGaps();
    map[SetupKeys::smoothingEnabled] = m_controls->isSmoothing();
    map[SetupKeys::smoothingCoef] = m_controls->smoothingWidth();
    map[SetupKeys::colormap] = colormapName();
    map[SetupKeys::whiteBackground] = isWhiteBackground();
    if (m_controls->marksZeros())
        map[SetupKeys::markZeros] = true;
    if (m_controls->locksColors())
        map[SetupKeys::lockColors] = true;
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
    if (isScaleGiven())
        m_fitted.restore(map, colorRange());
    m_controls->setLockColors(boolOr(map, SetupKeys::lockColors, false));
    m_controls->setFillGaps(boolOr(map, SetupKeys::autoFillGaps, true));
    m_controls->setMarkZeros(boolOr(map, SetupKeys::markZeros, false));
    m_controls->setSmoothingWidth(finiteNumber(map.value(SetupKeys::smoothingCoef)).value_or(0.0));
    m_controls->setSmoothing(boolOr(map, SetupKeys::smoothingEnabled, false));

    // A setup that doesn't name the background is dark, though a new view is light.
    const QVariant name = map.value(SetupKeys::colormap, QStringLiteral("jet"));
    setColormap(name.type() == QVariant::String ? name.toString() : colormapName(),
                boolOr(map, SetupKeys::whiteBackground, false));
}

} // namespace Tsb
