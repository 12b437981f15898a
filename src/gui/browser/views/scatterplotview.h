#pragma once

#include "gui/browser/plots/scatterplot.h"
#include "gui/browser/views/fittedscale.h"
#include "gui/browser/views/singleplotview.h"

#include <QSet>

#include <utility>

class QAction;

namespace Tsb {

class Resizer;
class ScatterPropertiesRow;
class VerticalScaleWidget;

/// The view around a scatter plot: its vertical scale, a row of properties for the present kind, a grip.
class ScatterPlotView : public SinglePlotView<ScatterPlot> {
    Q_OBJECT
public:
    explicit ScatterPlotView(QWidget *parent = nullptr);
    ~ScatterPlotView() override;

    const ScatterPlotSettings &plotSettings() const { return plot()->settings(); }
    VerticalScaleWidget *scaleWidget() const { return m_scale; }
    /// Null until it is shown for the first time: most plots are never asked for it, and it has many widgets.
    ScatterPropertiesRow *propertiesRow() const { return m_properties; }

    void setUiInfo(std::shared_ptr<UiInfo> uiInfo) override;
    QVariant settings() const override;
    void setSettings(const QVariant &settings) override;
    void setPredecessors(const QVector<View *> &views) override;

    /// As showType() for these spectra, but for the fit, which is left to the caller: it reads all the data in sight.
    void prepareType(int type, const QSet<QString> &spectra);

public Q_SLOTS:
    /// The kind, a ScatterPlotSettings::Type, and fits the scale to it. A kind without a choice yet takes the first
    /// there is.
    void showType(int type);
    void setElectrometerSelection(int electrometer);
    void setDiagnosticSelection(const QString &channelName);
    void setFractionSmallerLimit(double value);
    void setFractionLargerLimit(double value);
    void setFractionLimits(const SpectMath::MobilitySize &smaller, const SpectMath::MobilitySize &larger);
    void setFractionScale(SpectMath::DistributionScale scale);
    void setVisibleSpectra(QSet<QString> ids) override;
    void setSpectrumParameter(SpectrumParameter parameter);
    void setPropertiesVisible(bool visible);
    void setDatalabelsEnabled(bool on);
    void fitScale() override;
    void growScale() override;
    /// Shifts the scale, keeping its span, so that the current record's values are in view.
    void showSelectedValue();
    void reloadSetup();

protected:
    bool event(QEvent *event) override;

private:
    void makeActions();
    void makeProperties();
    void connectProperties();
    FittedScale::Range scale() const;
    void fitIfOffScale();
    void change(const std::function<void(ScatterPlotSettings &)> &edit);
    void applySettings();
    void refreshLabel();
    void chooseDefaults(ScatterPlotSettings &settings) const;

    std::shared_ptr<UiInfo> m_uiInfo;
    ScatterPlotSettings m_settings;
    VerticalScaleWidget *m_scale;
    ScatterPropertiesRow *m_properties = nullptr;
    FittedScale m_fitted;
    Resizer *m_resizer;
    QAction *m_labelAction = nullptr;
    QAction *m_propertiesAction = nullptr;
    QAction *m_rawAction = nullptr;
    QAction *m_processedAction = nullptr;
    QAction *m_noiseAction = nullptr;
};

} // namespace Tsb
