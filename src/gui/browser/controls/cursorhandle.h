#pragma once

#include "axis/measuringcursors.h"
#include "axis/timescale.h"

#include <QRect>

class QPainter;
class QPalette;
class QPoint;
class QSize;

namespace Tsb {

/// The handles of measuring cursors on a time axis: flags with the cursor's number that stand on the axis' lower edge
/// and point at the cursor's column. All places are in the axis' contents.
struct CursorHandles {
    const MeasuringCursors::Times &times;
    const TimeScale &scale;
    QSize axis;
    int lineHeight; ///< of the axis' labels

    /// The one under the point, of two the one that is drawn above; -1 for none.
    int at(const QPoint &point) const;
    void draw(QPainter &painter, const QPalette &palette) const;

private:
    bool isInSight(int which) const;
    QRect placeOf(int which) const;
};

} // namespace Tsb
