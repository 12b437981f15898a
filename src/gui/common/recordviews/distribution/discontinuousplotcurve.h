#pragma once

#include <QPolygonF>

#include <qwt_plot_curve.h>

namespace RecordViews {

/// A curve that breaks where a value is missing: NaN in x or y. It is drawn as lines, whatever its style, and a point
/// without neighbours as a dot. It bounds its finite points alone, so that missing values don't end the autoscale.
class DiscontinuousPlotCurve : public QwtPlotCurve {
public:
    explicit DiscontinuousPlotCurve(const QString &title = {});

    QRectF boundingRect() const override;

    /// The pieces of a line that lie within a rectangle, cut off at its edges. A point that isn't finite ends a piece.
    static QVector<QPolygonF> visiblePieces(const QPolygonF &points, const QRectF &rect);

protected:
    void drawCurve(QPainter *painter, int style, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                   const QRectF &canvasRect, int from, int to) const override;
};

} // namespace RecordViews
