#include "gui/common/recordviews/distribution/spectrumitems.h"

#include "gui/common/recordviews/distribution/discontinuousplotcurve.h"
#include "gui/common/recordviews/distribution/resultdata.h"

#include <QPen>

#include <qwt_plot.h>
#include <qwt_plot_histogram.h>

namespace RecordViews {

namespace {

constexpr double baseline = 1e-100; // bars stand on the lower edge of a logarithmic axis, too
constexpr double penWidth = 1;
constexpr double heldPenWidth = 0; // one pixel of the screen, however fine that is
constexpr double shownLevel = 20;
constexpr double heldLevel = 15; // above the grid, which is at 10

} // namespace

void SpectrumItems::attach(QwtPlotItem *item)
{
    item->setRenderHint(QwtPlotItem::RenderAntialiased);
    item->setItemAttribute(QwtPlotItem::AutoScale, false); // the plot knows its extents better
    item->setItemAttribute(QwtPlotItem::Legend, false);
    item->setZ(m_look == Look::held ? heldLevel : shownLevel);
    item->attach(m_plot);
}

void SpectrumItems::showPart(Pair &pair, const RealVector &grid, const RealVector &values,
                             SpectMath::DistributionType type, const QPen &pen)
{
    const bool isFraction = type == SpectMath::DistributionType::fraction;
    if (isFraction && !pair.bars) {
        pair.bars = new QwtPlotHistogram;
        pair.bars->setStyle(QwtPlotHistogram::Outline);
        pair.bars->setBaseline(baseline);
        attach(pair.bars);
    }
    if (!isFraction && !pair.curve) {
        pair.curve = new DiscontinuousPlotCurve;
        attach(pair.curve);
    }
    if (pair.bars)
        pair.bars->setVisible(isFraction);
    if (pair.curve)
        pair.curve->setVisible(!isFraction);
    if (isFraction) {
        pair.bars->setPen(pen);
        pair.bars->setSamples(new IntervalResultData(grid, values));
    } else {
        pair.curve->setPen(pen);
        pair.curve->setSamples(new ResultData(grid, values));
    }
}

void SpectrumItems::show(const DistributionValues &drawn, SpectMath::DistributionType type, const QColor &color)
{
    QPen pen(color, m_look == Look::held ? heldPenWidth : penWidth);
    showPart(m_values, drawn.grid, drawn.values, type, pen);
    if (m_look == Look::held)
        return;
    pen.setStyle(Qt::DotLine);
    showPart(m_uncertainties, drawn.grid, drawn.uncertainties, type, pen);
}

void SpectrumItems::hide()
{
    for (const Pair &pair : {m_values, m_uncertainties}) {
        if (pair.curve) {
            pair.curve->setSamples(QVector<QPointF>());
            pair.curve->setVisible(false);
        }
        if (pair.bars) {
            pair.bars->setSamples(QVector<QwtIntervalSample>());
            pair.bars->setVisible(false);
        }
    }
}

} // namespace RecordViews
