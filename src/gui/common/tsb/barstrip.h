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

    static constexpr std::size_t rowsAtOnce = 8; ///< row classes are counted up to a multiple of this

    /// The coverage of a bar without width in one column, by class of rows.
    struct Stamp {
        bool touches = false;
        std::vector<std::uint8_t> alphas;
        std::vector<float> through;       ///< the share of what lies beneath that both lines of the bar leave
        std::vector<std::uint16_t> lanes; ///< alphas, for each of the four channels
    };
    using Stamps = std::array<Stamp, phases * stampColumns>; ///< by phase of the middle and column

    void prepare(int height);
    void prepareColors(const std::vector<BarStyle> &styles);
    void blendRun(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                  std::size_t end, int first, int last);
    void blendColumn(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                     std::size_t end, int x);
    void addLayer(const Stamp &stamp, std::uint8_t style);
    void blendLayers(QImage &image, int x) const;
    void blendOverMean(QImage &image, int x);
    QRgb meanOfLayers(std::size_t row) const;

    int m_height = -1;
    std::vector<int> m_rowClass; ///< by row; -1 for rows that no bar touches
    int m_rowClasses = 0;
    std::size_t m_paddedClasses = 0;
    /// The colour of a style's pen, and its channels as often as rows are blended at once.
    struct PenColor {
        QRgb color;
        std::array<std::uint16_t, 4 * rowsAtOnce> lanes;
    };
    std::vector<PenColor> m_penColors;
    Stamps m_stamps[2]; ///< full and half height
    struct Layer {
        const Stamp *stamp;
        std::uint8_t style;
    };
    std::vector<Layer> m_layers;
    // By row class:
    std::vector<float> m_remaining;            ///< the weight of what lies beneath
    std::vector<float> m_red, m_green, m_blue; ///< sums over the layers by their weights
    std::vector<std::uint8_t> m_strongest;     ///< the greatest coverage of one layer
    std::vector<std::uint16_t> m_lanes;        ///< the channels while they are blended
};

/// The records whose bars may touch the columns first .. last - 1: from a walk back from the last of them that ends at
/// the first record that ends too early.
std::pair<std::size_t, std::size_t> barRun(const SpanIndex &spans, const TimeScale &scale, int first, int last);

} // namespace Tsb
