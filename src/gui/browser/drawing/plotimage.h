#pragma once

#include "axis/pixelrange.h"
#include "axis/timescale.h"

#include <QImage>

#include <vector>

namespace Tsb {

/// The cached picture of a strip of time: an image that follows the time scale by moving whole columns, and a record of
/// the columns that are out of date. Moves, changes and new sizes gather until staleColumns() brings the image to where
/// it should be and tells the columns to draw. Columns of ranges are those of the present scale.
class PlotImage {
public:
    /// The cached image: ARGB32 premultiplied, device pixel ratio 1.
    const QImage &image() const { return m_image; }
    /// To be drawn on.
    QImage &canvas() { return m_image; }
    const TimeScale &timeScale() const { return m_timeScale; }

    void setTimeScale(const TimeScale &scale);
    /// The whole image is out of date.
    void requestFullRedraw() { m_fullRedrawNeeded = true; }
    /// These columns are out of date. Returns whether any of them is in sight.
    bool touch(const PixelRange &columns);
    /// Keeps the left part where only the width changes; new columns at the right are out of date. An image that is
    /// still null stays so. Returns whether there is something to paint.
    bool resize(const QSize &size);

    /// Gives the image this size and moves it to the present scale. Returns the runs of columns that are to be drawn
    /// then, at most two that don't overlap; from here on they count as drawn.
    std::vector<PixelRange> staleColumns(const QSize &size);

private:
    QImage m_image;
    TimeScale m_timeScale;  ///< the present one
    TimeScale m_imageScale; ///< that of the image, which a move that isn't painted yet shifts by whole columns
    PixelRange m_stale;     ///< columns of the image's scale
    bool m_fullRedrawNeeded = true;
};

} // namespace Tsb
