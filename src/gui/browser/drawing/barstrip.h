#pragma once

#include "axis/timescale.h"
#include "store/spanindex.h"

#include <QBrush>
#include <QImage>
#include <QPen>

#include <cstdint>
#include <vector>

class QPainter;

namespace Tsb {

/// How one kind of bar looks.
struct BarStyle {
    QPen pen; ///< width 0, opaque
    QBrush brush;
    bool half = false; ///< half the height, as for provisional records
};

/// The contents of a bar strip: one bar a record from its begin to its end, in the order of the records.
struct BarStripSource {
    const SpanIndex *spans = nullptr;
    /// By record, an index into `styles`.
    const std::uint8_t *styleOf = nullptr;
    const std::vector<BarStyle> *styles = nullptr;
};

/// Draws strips of bars. Bars of more than a pixel are drawn antialiased, each from half a pixel inside its begin to
/// half a pixel inside its end; of those that begin in one column and end in one column only the last. A bar of a pixel
/// or less belongs to the column of its middle and to no other: upon the wide bars, a column that has such bars is
/// painted opaque in the mean of their pens, weighted by length. Bars without a pen count for nothing there. So a
/// column depends on nothing but its own bars. A bar that ends before it begins is a moment.
class BarStripPainter {
public:
    /// Draws the columns first .. last - 1, and a white background, from the painter's row 0 on.
    void draw(QPainter &painter, int height, const BarStripSource &source, const TimeScale &scale, int first, int last);

private:
    struct WideBar {
        std::size_t index;
        std::int64_t firstColumn, lastColumn;
        double x0, x1; ///< as they are drawn
        bool seen;
    };

    void prepareImage(int width, int height, std::size_t styles);
    void sortBars(const BarStripSource &source, const TimeScale &scale);
    void addWide(std::size_t index, std::int64_t begin, std::int64_t end, const TimeScale &scale);
    void hideWideBars();
    void drawWideBars(const BarStripSource &source);
    void paintColumns(const std::vector<BarStyle> &styles);

    QImage m_image;                       ///< with a margin on both sides; kept for its memory, as are the next two
    std::vector<WideBar> m_wide;          ///< in order
    std::vector<std::uint64_t> m_lengths; ///< of narrow bars, in ticks, by column of the image and by style
};

} // namespace Tsb
