#include "gui/common/recordviews/noisebars.h"

#include <QPainter>
#include <QPen>

#include <qwt_interval_symbol.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr double beyondCanvas = 20; ///< pixels, so that an endless bar shows no end

} // namespace

NoiseBars::NoiseBars()
{
    setStyle(QwtPlotIntervalCurve::NoCurve);
}

QRectF NoiseBars::boundingRect() const
{
    QwtInterval x, y;
    for (std::size_t i = 0; i < dataSize(); ++i) {
        const QwtIntervalSample bar = sample(int(i));
        x |= bar.value;
        for (const double end : {bar.interval.minValue(), bar.interval.maxValue()}) {
            if (std::isfinite(end))
                y |= end;
        }
    }
    if (!x.isValid())
        return QwtPlotIntervalCurve::boundingRect();
    if (!y.isValid())
        y = QwtInterval(0, 0); // the bars' middle
    return QRectF(x.minValue(), y.minValue(), x.width(), y.width());
}

void NoiseBars::drawSymbols(QPainter *painter, const QwtIntervalSymbol &symbol, const QwtScaleMap &xMap,
                            const QwtScaleMap &yMap, const QRectF &canvasRect, int from, int to) const
{
    QPen pen = symbol.pen();
    pen.setCapStyle(Qt::FlatCap);
    painter->setPen(pen);
    painter->setBrush(symbol.brush());
    const double top = canvasRect.top() - beyondCanvas, bottom = canvasRect.bottom() + beyondCanvas;
    for (int i = from; i <= to; ++i) {
        const QwtIntervalSample bar = sample(i);
        const double x = xMap.transform(bar.value);
        if (x < canvasRect.left() || x > canvasRect.right())
            continue;
        const double low = std::clamp(yMap.transform(bar.interval.minValue()), top, bottom);
        const double high = std::clamp(yMap.transform(bar.interval.maxValue()), top, bottom);
        symbol.draw(painter, orientation(), QPointF(x, low), QPointF(x, high));
    }
}

} // namespace RecordViews
