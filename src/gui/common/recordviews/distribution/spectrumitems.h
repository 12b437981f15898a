#pragma once

#include "gui/common/recordviews/distribution/distributionvalues.h"

#include <QColor>

class QwtPlot;
class QwtPlotHistogram;
class QwtPlotItem;

namespace RecordViews {

class DiscontinuousPlotCurve;

/// What a plot draws for one spectrum: values and dotted uncertainties, as curves for a density and as bars for a
/// fraction. The items are made when they are needed first, belong to the plot, and take other values without being
/// made anew.
class SpectrumItems {
public:
    enum class Look {
        shown, ///< in the colour
        held   ///< thin, without uncertainties, below what is shown
    };

    /// The plot must outlive this.
    SpectrumItems(QwtPlot *plot, Look look) : m_plot(plot), m_look(look) {}

    void show(const DistributionValues &drawn, SpectMath::DistributionType type, const QColor &color);
    void hide();

private:
    /// A curve and bars, of which one is seen.
    struct Pair {
        DiscontinuousPlotCurve *curve = nullptr;
        QwtPlotHistogram *bars = nullptr;
    };

    void showPart(Pair &pair, const RealVector &grid, const RealVector &values, SpectMath::DistributionType type,
                  const QPen &pen);
    void attach(QwtPlotItem *item);

    QwtPlot *m_plot;
    Look m_look;
    Pair m_values;
    Pair m_uncertainties;
};

} // namespace RecordViews
