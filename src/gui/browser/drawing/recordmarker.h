#pragma once

class QColor;
class QPainter;
class QRect;

namespace Tsb {

/// Marks the time of a record over a strip: a translucent bar between two lines. The positions are columns right of the
/// strip's left edge, and may lie far outside of it.
void drawRecordMarker(QPainter &painter, const QRect &strip, double begin, double end, const QColor &color);

} // namespace Tsb
