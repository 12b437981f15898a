#pragma once

#include "axis/timescale.h"
#include "gui/browser/drawing/barhiding.h"
#include "gui/browser/drawing/barlayers.h"
#include "gui/browser/drawing/barstamps.h"
#include "store/spanindex.h"

#include <QBrush>
#include <QPen>

#include <cstdint>
#include <vector>

class QPainter;

namespace Tsb {

/// How one kind of bar looks.
struct BarStyle {
    QPen pen; ///< width 0
    QBrush brush;
    bool half = false; ///< half the height, as for provisional records
};

/// What a bar strip shows: one bar a record from its begin to its end, in the order of the records.
struct BarStripSource {
    const SpanIndex *spans = nullptr;
    /// By record, an index into `styles`.
    const std::uint8_t *styleOf = nullptr;
    const std::vector<BarStyle> *styles = nullptr;
};

/// Draws strips of bars, antialiased. Bars of more than a pixel are drawn one by one, but for those that others hide
/// where very many lie upon each other (BarHiding). Of bars below a pixel there may be hundreds to a column, of which
/// the last few dozen are all that can be seen: those are blended in memory, with the coverage and the rounding that
/// drawing them one by one would have. Keeps what it learned about the present height.
class BarStripPainter {
public:
    /// Draws the columns first .. last - 1 of the painter's image, which is of 32 bits a pixel. The background is
    /// there.
    void draw(QPainter &painter, QImage &image, const BarStripSource &source, const TimeScale &scale, int first,
              int last);

    /// Every bar of the run by the painter: what draw() must come to. Slow.
    static void drawEachBar(QPainter &painter, int height, const BarStripSource &source, const TimeScale &scale,
                            int first, int last);

private:
    enum Shape : std::uint8_t { Full, Half, Unseen, Shapes };
    /// What bars of one style that have no width look like.
    struct Outline {
        Shape shape;
        BarColor color;
    };

    void prepareOutlines(const std::vector<BarStyle> &styles);
    void findWideBars(const SpanIndex &spans, const TimeScale &scale, std::size_t begin, std::size_t end);
    void hideCoveredBars(const BarStripSource &source, int first, int last);
    void blendRun(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                  std::size_t end, int first, int last);
    BarCover findLayers(const BarStripSource &source, const TimeScale &scale, std::size_t begin, std::size_t end, int x,
                        int clearingAlpha);
    void addLayers(const SpanIndex::Times &bars, const Outline *const *outlines, const BarMiddles &middles,
                   const bool *visible, BarCover &cover);

    struct WideBar {
        std::size_t index;
        BarEnds ends;
        bool seen;
    };
    std::vector<WideBar> m_wide; ///< kept for its memory
    BarStamps m_stamps;
    std::vector<Outline> m_outlines; ///< by style
    BarLayers m_layers;
    std::size_t m_met = 0; ///< bars walked over for the present column
};

/// The records whose bars may touch the columns first .. last - 1: from a walk back from the last of them that ends at
/// the first record that ends too early.
std::pair<std::size_t, std::size_t> barRun(const SpanIndex &spans, const TimeScale &scale, int first, int last);

} // namespace Tsb
