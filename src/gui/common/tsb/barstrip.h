#pragma once

#include "gui/common/tsb/timescale.h"
#include "store/spanindex.h"

#include <QBrush>
#include <QImage>
#include <QPen>

#include <array>
#include <cstdint>
#include <functional>
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
    /// The style of record i, an index into `styles`.
    std::function<std::uint8_t(std::size_t)> styleOf;
    const std::vector<BarStyle> *styles = nullptr;
};

/// Draws strips of bars, antialiased. Bars of more than a pixel are drawn one by one. Of bars below a pixel there may
/// be hundreds to a column, of which the last few dozen are all that can be seen: those are blended in memory, with the
/// coverage and the rounding that drawing them one by one would have. Keeps what it learned about the present height.
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
    static constexpr int phaseBits = 6;
    static constexpr int phases = 1 << phaseBits; ///< positions within a column that the raster engine tells apart
    static constexpr int stampColumns = 3;        ///< the column that the bar's middle lies in, and its neighbours

    /// The coverage of a bar without width, by phase of its middle, column and class of rows.
    struct Stamp {
        std::array<std::vector<std::uint8_t>, phases * stampColumns> alphas; ///< one per row class
        std::array<std::vector<float>, phases * stampColumns> through;       ///< what both lines leave to see
    };

    void prepare(int height);
    void blendRun(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                  std::size_t end, int first, int last);
    void blendColumn(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                     std::size_t end, int x);
    /// Where the middle of a bar below a pixel lies, in 64ths of a column from the left of column `base`.
    static int phaseOf(const SpanIndex &spans, const TimeScale &scale, std::size_t i, int base);
    void blendLayers(QImage &image, int x, bool covered);
    QRgb meanOfLayers(int row) const;

    int m_height = -1;
    std::vector<int> m_rowClass; ///< by row; -1 for rows that no bar touches
    int m_rowClasses = 0;
    Stamp m_stamps[2]; ///< full and half height
    struct Layer {
        const std::uint8_t *alphas;
        QRgb color;
    };
    std::vector<Layer> m_layers;
    // By row class:
    std::vector<float> m_remaining;            ///< the weight of what lies beneath
    std::vector<float> m_red, m_green, m_blue; ///< sums over the layers by their weights
    std::vector<std::uint8_t> m_strongest;     ///< the greatest coverage of one layer
};

/// The records whose bars may touch the columns first .. last - 1: from a walk back from the last of them that ends at
/// the first record that ends too early.
std::pair<std::size_t, std::size_t> barRun(const SpanIndex &spans, const TimeScale &scale, int first, int last);

} // namespace Tsb
