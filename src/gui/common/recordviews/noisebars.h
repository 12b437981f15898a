#pragma once

#include <qwt_plot_intervalcurve.h>

namespace RecordViews {

/// Intervals of a plot, drawn by their symbol, that may be endless: such a one goes over the whole height of the
/// canvas, and the axes fit the others.
class NoiseBars : public QwtPlotIntervalCurve {
public:
    NoiseBars();

    /// That of the finite ends; invalid without any.
    QRectF boundingRect() const override;

protected:
    void drawSymbols(QPainter *painter, const QwtIntervalSymbol &symbol, const QwtScaleMap &xMap,
                     const QwtScaleMap &yMap, const QRectF &canvasRect, int from, int to) const override;
};

} // namespace RecordViews
