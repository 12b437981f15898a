#pragma once

#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/drawing/colormap.h"
#include "gui/browser/plots/spectrogramplot.h"
#include "gui/browser/views/fittedscale.h"
#include "gui/browser/views/multiplotview.h"

#include <QPointer>
#include <QSet>
#include <QStringList>

#include <optional>
#include <utility>

class QFrame;

namespace Tsb {

class ColorLimits;
class SpectraSelectionWidget;
class SpectrogramControls;

/// A spectrogram strip for each visible spectrum, with a scale on the left of each, and one colour bar for all.
class SpectrogramView : public MultiPlotView<SpectrogramPlot, VerticalScaleWidget> {
    Q_OBJECT
public:
    explicit SpectrogramView(QWidget *parent = nullptr);
    ~SpectrogramView() override;

    const QSet<QString> &visibleSpectra() const { return m_visibleSpectra; }
    /// Limits of the colours in decades; not a number until they are set.
    double colorLower() const;
    double colorUpper() const;
    const QString &colormapName() const;
    bool isWhiteBackground() const;
    /// An unknown name changes nothing.
    void setColormap(const QString &name, bool white);

    QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors) override;
    void setColorLock(ColorLock *lock) override;
    QVariant settings() const override;
    void setSettings(const QVariant &settings) override;

public Q_SLOTS:
    void setUiInfo(std::shared_ptr<UiInfo> uiInfo) override;
    /// Fits the colour limits to the values in view; without values they stay.
    void fitScale() override;
    void growScale() override;
    void setVisibleSpectra(QSet<QString> ids) override;
    void setSmoothingEnabled(bool on);
    void showSettingsForm(bool visible);
    /// Each changes nothing where ColorLimits refuses it.
    void setColorLimits(double lower, double upper);
    void lowSpinBoxChanged(double value);
    void highSpinBoxChanged(double value);
    void updateRows();
    /// Splits the colours in two zones at a value in decades; not a number for the plain colours.
    void highlightValue(double value);

Q_SIGNALS:
    void smoothingChanged(double width);
    void requestColorLimits(double lower, double upper);

private Q_SLOTS:
    /// A choice of the user: fits the colours if they have no limits yet.
    void chooseSpectra(const QSet<QString> &ids);

private:
    void connectControls();
    void appendRow();
    void removeLastRow();
    void configureRow(const Row &row, const SpectMath::SpectrumInfoPointer &info);
    void showColors(const Colormap::Map &colormap, bool white);
    void restoreColormap();
    void lockColors(bool on);
    void addVisibleValuesTo(SpectMath::DecadeHistogram &histogram);
    FittedScale::Range colorRange() const;
    std::optional<FittedScale::Range> limitsInSight();

    std::shared_ptr<UiInfo> m_uiInfo;
    QSet<QString> m_visibleSpectra;
    ColorLimits *m_limits;
    FittedScale m_fitted;
    QPointer<ColorLock> m_colorLock; ///< null: there are no others
    SpectrogramControls *m_controls;
    SpectraSelectionWidget *m_selectionWidget; ///< a pop-up
    QFrame *m_noSpectraFrame;
};

} // namespace Tsb
