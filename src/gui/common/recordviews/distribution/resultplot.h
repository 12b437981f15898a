#pragma once

#include "gui/common/recordviews/distribution/distributiontext.h"
#include "gui/common/recordviews/distribution/spectrumitems.h"
#include "gui/common/recordviews/recordplot.h"

#include <QColor>

namespace RecordViews {

/// A spectrum under the name and in the colour that a plot shows it by.
struct ShownSpectrum {
    std::shared_ptr<const SpectMath::Spectrum> spectrum; ///< with a description
    QString name;
    QColor color;
};
using ShownSpectra = QVector<ShownSpectrum>;

/// One plot of size distributions: any number of spectra of a record, and others that are held for comparison. All are
/// drawn on the axis of the first of them, which is logarithmic and ascending. Plot items stay when spectra change.
class ResultPlot : public RecordPlot {
    Q_OBJECT
public:
    /// The options are the view's; showSpectra() takes up what changed in them.
    explicit ResultPlot(std::shared_ptr<const PlotOptions> options, QWidget *parent = nullptr);
    ~ResultPlot() override;

    /// In the order of their descriptions; `held` are drawn thin and grey. One replot.
    void showSpectra(const ShownSpectra &shown, const ShownSpectra &held);
    /// Until the next ones are shown: what is drawn stays, but the records needn't.
    void letGoOfSpectra();

protected:
    QString valuesText() const override;
    QVector<PlotReadout::Series> readoutSeries() const override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class ExtentItem;

    /// The drawn values of some spectra, and their items by place.
    struct Traces {
        std::vector<SpectrumItems> items;
        std::vector<DistributionValues> drawn;
        ShownSpectra spectra;
    };

    void showTraces(Traces &traces, const ShownSpectra &spectra, SpectrumItems::Look look,
                    SpectMath::DistributionScale axis);
    void setScaleKind();
    void setExtents();
    void setTitles(const SpectMath::SpectrumInfo &first, SpectMath::DistributionScale axis);
    void fitVerticalTitle();
    void fitTitle();
    int namesThatFit() const;
    QString coloredNames(int count) const;
    QVector<QPointF> readoutPoints(const DistributionValues &drawn) const;

    std::shared_ptr<const PlotOptions> m_options;
    ExtentItem *m_extents;
    DisplaySmoothing m_smoothing;
    Traces m_shown;
    Traces m_held;
    QString m_verticalTitle;
    bool m_isLog = false;
};

} // namespace RecordViews
