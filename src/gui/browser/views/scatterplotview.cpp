#include "gui/browser/views/scatterplotview.h"

#include "columns/scattersetup.h"
#include "columns/scattervalues.h"
#include "columns/setupkeys.h"
#include "columns/setupvalues.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/views/scatterpropertiesrow.h"

#include <QAction>
#include <QEvent>

#include <cmath>

namespace Tsb {

using SpectMath::DistributionScale;
using SpectMath::MobilitySize;

namespace {

constexpr int initialHeight = 120;
constexpr double marginShare = 0.05; ///< of the span of the values, above and below them
constexpr double initialSmallerLimit = 0.1, initialLargerLimit = 100.0;

} // namespace

ScatterPlotView::ScatterPlotView(QWidget *parent)
    : SinglePlotView<ScatterPlot>(parent), m_scale(new VerticalScaleWidget(this)), m_resizer(new Resizer(this, this))
{
    m_settings.smallerLimit = fractionLimit(DistributionScale::diameter, initialSmallerLimit);
    m_settings.largerLimit = fractionLimit(DistributionScale::diameter, initialLargerLimit);
    auto *scatter = new ScatterPlot(this);
    setPlot(scatter);
    viewLayout()->insertRow(0, m_scale, scatter);
    viewLayout()->insertRow(1, m_resizer, nullptr);
    setFixedHeight(initialHeight);
    makeActions();

    connect(m_scale, &VerticalScaleWidget::scaleChanged, scatter, &ScatterPlot::setScale);
    connect(m_scale, &VerticalScaleWidget::minMaxChanged, this, [this] { plot()->setScale(m_scale->scale()); });
    connect(m_scale, &VerticalScaleWidget::requestAutoscale, this, &ScatterPlotView::fitScale);
    connect(scatter, &Plot::valueCursorChanged, m_scale, &VerticalScaleWidget::showCursor);
    connect(scatter, &ScatterPlot::offScaleCounted, this,
            [this](int count) { m_scale->setNotice(count > 0 ? tr("off scale: %1").arg(count) : QString()); });
    applySettings();
}

ScatterPlotView::~ScatterPlotView() = default;

bool ScatterPlotView::event(QEvent *event)
{
    if (event->type() == QEvent::Polish && m_propertiesAction->isChecked())
        makeProperties();
    return View::event(event);
}

/// Above the plot, on the screen and for Tab.
void ScatterPlotView::makeProperties()
{
    if (m_properties)
        return;
    m_properties = new ScatterPropertiesRow(this);
    m_properties->setOptions({m_labelAction, m_propertiesAction});
    m_properties->setUiInfo(m_uiInfo);
    m_properties->showSettings(m_settings);
    connectProperties();
    viewLayout()->insertRow(0, m_properties, nullptr);
    setTabOrder(m_properties->lastForTab(), m_scale);
    setTabOrder(m_scale, plot());
}

/// The user's choices in the row. Another quantity has other units and is fitted; the same one of another place or
/// range keeps the scale, by which it is compared, unless nothing of it would lie there.
void ScatterPlotView::connectProperties()
{
    connect(m_properties, &ScatterPropertiesRow::electrometerChosen, this, [this](int electrometer) {
        setElectrometerSelection(electrometer);
        fitIfOffScale();
    });
    connect(m_properties, &ScatterPropertiesRow::variableChosen, this, [this](const QString &name) {
        setDiagnosticSelection(name);
        fitScale();
    });
    connect(m_properties, &ScatterPropertiesRow::parameterChosen, this, [this](SpectrumParameter parameter) {
        setSpectrumParameter(parameter);
        fitScale();
    });
    connect(m_properties, &ScatterPropertiesRow::fractionScaleChosen, this, &ScatterPlotView::setFractionScale);
    connect(m_properties, &ScatterPropertiesRow::smallerLimitChosen, this, &ScatterPlotView::setFractionSmallerLimit);
    connect(m_properties, &ScatterPropertiesRow::largerLimitChosen, this, &ScatterPlotView::setFractionLargerLimit);
    connect(m_properties, &ScatterPropertiesRow::spectraChosen, this, &ScatterPlotView::setVisibleSpectra);
    connect(m_properties, &ScatterPropertiesRow::totalChosen, this, [this](bool total) {
        change([total](ScatterPlotSettings &s) { s.totalConcentration = total; });
        fitIfOffScale();
    });
    connect(m_properties, &ScatterPropertiesRow::concentrationTypeChosen, this,
            [this](SpectMath::ConcentrationType type) {
                change([type](ScatterPlotSettings &s) { s.concentrationType = type; });
                fitScale();
            });
}

void ScatterPlotView::makeActions()
{
    const auto add = [this](const QString &text) {
        auto *action = new QAction(text, this);
        addAction(action);
        return action;
    };
    const auto addCheckable = [&add](const QString &text, bool on) {
        QAction *action = add(text);
        action->setCheckable(true);
        action->setChecked(on);
        return action;
    };
    addSeparator();
    connect(add(tr("Fit vertical scale")), &QAction::triggered, this, &ScatterPlotView::fitScale);
    connect(add(tr("Show selected value")), &QAction::triggered, this, &ScatterPlotView::showSelectedValue);
    m_labelAction = addCheckable(tr("Show value label for selected record"), false);
    m_propertiesAction = addCheckable(tr("Show properties"), true);
    m_rawAction = addCheckable(tr("Show raw currents"), true);
    m_processedAction = addCheckable(tr("Show processed currents"), true);
    m_noiseAction = addCheckable(tr("Show noise level"), false);
    connect(m_labelAction, &QAction::toggled, this, &ScatterPlotView::setDatalabelsEnabled);
    connect(m_propertiesAction, &QAction::toggled, this, &ScatterPlotView::setPropertiesVisible);
    connect(m_rawAction, &QAction::toggled, this,
            [this](bool on) { change([on](ScatterPlotSettings &s) { s.showRawCurrents = on; }); });
    connect(m_processedAction, &QAction::toggled, this,
            [this](bool on) { change([on](ScatterPlotSettings &s) { s.showProcessedCurrents = on; }); });
    connect(m_noiseAction, &QAction::toggled, this,
            [this](bool on) { change([on](ScatterPlotSettings &s) { s.showElectrometerNoise = on; }); });
    for (QAction *action : {m_rawAction, m_processedAction, m_noiseAction})
        connect(action, &QAction::triggered, this, &ScatterPlotView::fitIfOffScale);
}

// ---- settings

void ScatterPlotView::change(const std::function<void(ScatterPlotSettings &)> &edit)
{
    ScatterPlotSettings changed = m_settings;
    edit(changed);
    if (changed == m_settings)
        return;
    m_settings = changed;
    applySettings();
}

/// Brings every widget in step with the settings.
void ScatterPlotView::applySettings()
{
    const bool electrometer = m_settings.type == ScatterPlotSettings::Electrometer;
    for (QAction *action : {m_rawAction, m_processedAction, m_noiseAction})
        action->setVisible(electrometer);
    m_rawAction->setChecked(m_settings.showRawCurrents);
    m_processedAction->setChecked(m_settings.showProcessedCurrents);
    m_noiseAction->setChecked(m_settings.showElectrometerNoise);
    m_labelAction->setChecked(m_settings.datalabels);
    m_scale->setAppearLog(m_settings.type == ScatterPlotSettings::Concentration);
    if (m_properties)
        m_properties->showSettings(m_settings);
    plot()->setSettings(m_settings);
    refreshLabel();
}

void ScatterPlotView::refreshLabel()
{
    QString name = m_settings.parameterName, unit;
    if (const auto metadata = m_uiInfo ? m_uiInfo->metadata() : nullptr) {
        if (m_settings.type == ScatterPlotSettings::Electrometer)
            name = metadata->electrometerNames.value(m_settings.electrometerNumber);
        else if (const auto variable = metadata->variable(m_settings.parameterName))
            unit = variable->unit;
    }
    const QString label = scatterScaleLabel(m_settings, name, unit);
    m_scale->setLabel(label);
    plot()->setAccessibleName(QString(label).replace(QLatin1Char('\n'), QLatin1Char(' ')));
}

void ScatterPlotView::chooseDefaults(ScatterPlotSettings &settings) const
{
    const auto metadata = m_uiInfo ? m_uiInfo->metadata() : nullptr;
    if (!metadata)
        return;
    if (settings.type == ScatterPlotSettings::Electrometer && settings.electrometerNumber < 0 &&
        metadata->totalElectrometers > 0)
        settings.electrometerNumber = 0;
    if (settings.type == ScatterPlotSettings::Variable && settings.parameterName.isEmpty() &&
        !metadata->variables.isEmpty())
        settings.parameterName = metadata->variables.first()->name;
    if (settings.usesSpectra() && settings.visibleSpectra.isEmpty() && m_uiInfo->spectrumInfos().size() == 1)
        settings.visibleSpectra = {m_uiInfo->spectrumInfos().first()->hash};
}

void ScatterPlotView::showType(int type)
{
    if (type < ScatterPlotSettings::Electrometer || type > ScatterPlotSettings::Parameter)
        return;
    prepareType(type, m_settings.visibleSpectra);
    fitScale();
}

void ScatterPlotView::prepareType(int type, const QSet<QString> &spectra)
{
    const bool changed = type != m_settings.type;
    change([&](ScatterPlotSettings &settings) {
        settings.type = type;
        settings.visibleSpectra = spectra;
        chooseDefaults(settings);
    });
    if (changed) // values of the former kind would be read in another unit
        m_scale->setMinMax(0.0, type == ScatterPlotSettings::Concentration ? 5.0 : 1.0, true);
}

void ScatterPlotView::setElectrometerSelection(int electrometer)
{
    change([electrometer](ScatterPlotSettings &s) { s.electrometerNumber = electrometer; });
}

void ScatterPlotView::setDiagnosticSelection(const QString &channelName)
{
    change([&channelName](ScatterPlotSettings &s) { s.parameterName = channelName; });
}

void ScatterPlotView::setFractionSmallerLimit(double value)
{
    setFractionLimits(fractionLimit(m_settings.fractionScale, value), m_settings.largerLimit);
}

void ScatterPlotView::setFractionLargerLimit(double value)
{
    setFractionLimits(m_settings.smallerLimit, fractionLimit(m_settings.fractionScale, value));
}

void ScatterPlotView::setFractionLimits(const MobilitySize &smaller, const MobilitySize &larger)
{
    change([&](ScatterPlotSettings &s) {
        s.smallerLimit = limitInBothUnits(smaller);
        s.largerLimit = limitInBothUnits(larger);
    });
}

void ScatterPlotView::setFractionScale(DistributionScale scale)
{
    change([scale](ScatterPlotSettings &s) { s.fractionScale = scale; });
}

void ScatterPlotView::setVisibleSpectra(QSet<QString> ids)
{
    const bool first = m_settings.visibleSpectra.isEmpty();
    change([&ids](ScatterPlotSettings &s) { s.visibleSpectra = ids; });
    if (first && !ids.isEmpty())
        fitScale();
}

void ScatterPlotView::setSpectrumParameter(SpectrumParameter parameter)
{
    change([parameter](ScatterPlotSettings &s) { s.spectrumParameter = parameter; });
}

void ScatterPlotView::setDatalabelsEnabled(bool on)
{
    change([on](ScatterPlotSettings &s) { s.datalabels = on; });
}

void ScatterPlotView::setPropertiesVisible(bool visible)
{
    m_propertiesAction->setChecked(visible);
    if (visible && testAttribute(Qt::WA_WState_Polished))
        makeProperties();
    if (m_properties)
        m_properties->setVisible(visible);
}

// ---- the data's description and the selected record

void ScatterPlotView::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    m_uiInfo = std::move(uiInfo);
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &ScatterPlotView::reloadSetup);
    plot()->setUiInfo(m_uiInfo);
    reloadSetup();
}

void ScatterPlotView::reloadSetup()
{
    if (m_properties)
        m_properties->setUiInfo(m_uiInfo);
    refreshLabel();
}

// ---- the vertical scale

void ScatterPlotView::fitScale()
{
    const auto range = plot()->minMax();
    const double margin = (range.second - range.first) * marginShare;
    const double lower = range.first - margin, upper = range.second + margin;
    if (range.first < range.second && std::isfinite(lower) && std::isfinite(upper))
        m_scale->setMinMax(lower, upper, true);
    m_fitted.fit(scale());
}

void ScatterPlotView::growScale()
{
    if (!m_fitted.isUntouched(scale()))
        return; // looking at all values in sight takes its time
    const auto grown = FittedScale::grown(scale(), plot()->minMax(), marginShare);
    if (!grown)
        return;
    m_scale->setMinMax(grown->first, grown->second, true);
    m_fitted.fit(scale());
}

FittedScale::Range ScatterPlotView::scale() const
{
    return {m_scale->minimum(), m_scale->maximum()};
}

void ScatterPlotView::fitIfOffScale()
{
    const auto range = plot()->minMax();
    if (range.second < m_scale->minimum() || range.first > m_scale->maximum())
        fitScale();
}

void ScatterPlotView::showSelectedValue()
{
    const auto record = plot()->currentRecord();
    if (!record || !m_scale->scale().valid)
        return;
    double least = std::numeric_limits<double>::infinity(), greatest = -least;
    for (const double value : plot()->scaleValuesOf(*record)) {
        if (std::isfinite(value)) {
            least = std::min(least, value);
            greatest = std::max(greatest, value);
        }
    }
    const double span = m_scale->maximum() - m_scale->minimum();
    if (!(least <= greatest) || !std::isfinite(span))
        return;
    const double margin = span * marginShare;
    double shift = 0;
    if (greatest + margin > m_scale->maximum())
        shift = greatest + margin - m_scale->maximum();
    else if (least - margin < m_scale->minimum())
        shift = least - margin - m_scale->minimum();
    if (shift != 0)
        m_scale->setMinMax(m_scale->minimum() + shift, m_scale->maximum() + shift, true);
}

// ---- the stored setup

QVariant ScatterPlotView::settings() const
{
    QVariantMap map = scatterSetup(m_settings);
    map[SetupKeys::height] = height();
    map[SetupKeys::propertiesVisible] = m_propertiesAction->isChecked();
    if (std::isfinite(m_scale->minimum()) && std::isfinite(m_scale->maximum())) {
        map[SetupKeys::scaleMin] = m_scale->minimum();
        map[SetupKeys::scaleMax] = m_scale->maximum();
        m_fitted.store(scale(), &map);
    }
    return map;
}

void ScatterPlotView::setPredecessors(const QVector<View *> &views)
{
    QVector<ScatterPlot *> plots;
    for (View *view : views) {
        if (auto *const former = qobject_cast<ScatterPlotView *>(view))
            plots.append(former->plot());
    }
    plot()->setPredecessors(plots);
}

void ScatterPlotView::setSettings(const QVariant &settings)
{
    if (!settings.isValid())
        return;
    const QVariantMap map = settings.toMap();
    restoreHeight(map.value(SetupKeys::height));
    setPropertiesVisible(boolOr(map, SetupKeys::propertiesVisible, true));
    const int type = scatterTypeFromSetup(map, m_settings.type);
    change([&map](ScatterPlotSettings &s) { readScatterSetup(map, s); });
    const auto range = finiteRange(map, SetupKeys::scaleMin, SetupKeys::scaleMax);
    setScaleGiven(range && range->first < range->second && std::isfinite(range->second - range->first));
    if (!isScaleGiven())
        return showType(type);
    prepareType(type, m_settings.visibleSpectra);
    m_scale->setMinMax(range->first, range->second, true);
    m_fitted.restore(map, scale());
}

} // namespace Tsb
