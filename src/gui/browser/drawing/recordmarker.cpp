#include "gui/browser/drawing/recordmarker.h"

#include <QPainter>

namespace Tsb {

void drawRecordMarker(QPainter &painter, const QRect &strip, double begin, double end, const QColor &color)
{
    const double x0 = strip.left() + begin, x1 = strip.left() + end;
    if (x1 + 2 < strip.left() || x0 - 2 > strip.right() + 1)
        return;
    // Held near the strip: coordinates of a far zoom are beyond what the rasterizer can take, and not every document
    // cuts off what lies beyond.
    const double left = std::max(x0 - 1, strip.left() - 1.0), right = std::min(x1 + 1, strip.right() + 2.0);
    QColor translucent = color;
    translucent.setAlpha(100);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(translucent);
    painter.drawRect(QRectF(left, strip.top(), right - left, strip.height()));
    painter.setPen(color);
    painter.drawLine(QPointF(left, strip.top()), QPointF(left, strip.bottom() + 1));
    painter.drawLine(QPointF(right, strip.top()), QPointF(right, strip.bottom() + 1));
}

} // namespace Tsb
