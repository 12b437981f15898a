#include "gui/browser/drawing/barstrip.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tsb {

namespace {

/// Sets pen and brush only when the style changes: that costs as much as a bar.
class BarPen {
public:
    BarPen(QPainter &painter, const std::vector<BarStyle> &styles) : m_painter(painter), m_styles(styles)
    {
        painter.setRenderHint(QPainter::Antialiasing);
    }
    const BarStyle &use(std::uint8_t style)
    {
        if (m_present != style) {
            m_present = style;
            m_painter.setPen(m_styles[style].pen);
            m_painter.setBrush(m_styles[style].brush);
        }
        return m_styles[style];
    }

private:
    QPainter &m_painter;
    const std::vector<BarStyle> &m_styles;
    int m_present = -1;
};

BarEnds endsOfBar(const SpanIndex &spans, const TimeScale &scale, std::size_t i)
{
    return barEnds(scale, spans.begin(i), spans.end(i));
}

/// So many bars are worked out side by side.
constexpr std::size_t barsAtOnce = 8;
/// For so many, waiting for memory isn't worth avoiding.
constexpr std::size_t mostFetched = 512;
/// More wide bars than this lie upon each other, or show little of themselves.
constexpr std::size_t mostWideBars = 1024;

} // namespace

std::pair<std::size_t, std::size_t> barRun(const SpanIndex &spans, const TimeScale &scale, int first, int last)
{
    const std::int64_t from = ticksOf(scale.tickAt(std::int64_t(first) - 1));
    const std::int64_t until = ticksOf(scale.tickAt(std::int64_t(last) + 1));
    const std::size_t end = spans.lowerBound(until);
    std::size_t begin = std::min(spans.lowerBound(from), end); // what begins later than this ends later, too
    while (begin > 0 && spans.end(begin - 1) >= from)
        --begin;
    return {begin, end};
}

void BarStripPainter::drawEachBar(QPainter &painter, int height, const BarStripSource &source, const TimeScale &scale,
                                  int first, int last)
{
    BarPen pen(painter, *source.styles);
    const auto run = barRun(*source.spans, scale, first, last);
    for (std::size_t i = run.first; i < run.second; ++i) {
        const BarStyle &style = pen.use(source.styleOf[i]);
        painter.drawRect(barRect(endsOfBar(*source.spans, scale, i), height, style.half, first, last));
    }
}

void BarStripPainter::prepareOutlines(const std::vector<BarStyle> &styles)
{
    m_outlines.clear();
    for (const BarStyle &style : styles) {
        // Without width there is nothing to fill.
        const Shape shape = style.pen.style() == Qt::NoPen ? Unseen : style.half ? Half : Full;
        m_outlines.push_back({shape, barColor(style.pen.color().rgb())});
    }
}

void BarStripPainter::findWideBars(const SpanIndex &spans, const TimeScale &scale, std::size_t begin, std::size_t end)
{
    m_wide.clear();
    for (std::size_t i = begin; i < end; ++i) {
        // The cheap tests first: most bars are decided by them.
        if (saturatedSubtract(spans.greatestEndOfBlock(i), spans.leastBeginOfBlock(i)) <= scale.ticksPerPixel) {
            i = spans.endOfBlock(i) - 1; // a block that lies within a pixel
            continue;
        }
        if (saturatedSubtract(spans.end(i), spans.begin(i)) <= scale.ticksPerPixel)
            continue;
        const BarEnds ends = endsOfBar(spans, scale, i);
        if (ends.hasWidth())
            m_wide.push_back({i, ends, true});
    }
}

void BarStripPainter::hideCoveredBars(const BarStripSource &source, int first, int last)
{
    BarHiding hiding(first, last);
    for (auto bar = m_wide.rbegin(); bar != m_wide.rend(); ++bar) {
        const BarStyle &style = (*source.styles)[source.styleOf[bar->index]];
        bar->seen =
            hiding.isSeen(bar->ends, {style.pen.style() != Qt::NoPen, style.brush.style() != Qt::NoBrush, style.half});
    }
}

void BarStripPainter::draw(QPainter &painter, QImage &image, const BarStripSource &source, const TimeScale &scale,
                           int first, int last)
{
    m_stamps.prepare(image.height());
    prepareOutlines(*source.styles);
    const auto run = barRun(*source.spans, scale, first, last);
    findWideBars(*source.spans, scale, run.first, run.second);
    if (m_wide.size() > mostWideBars)
        hideCoveredBars(source, first, last);
    BarPen pen(painter, *source.styles);
    std::size_t narrow = run.first; // where the present run of bars below a pixel begins
    for (const WideBar &bar : m_wide) {
        blendRun(image, source, scale, narrow, bar.index, first, last);
        narrow = bar.index + 1;
        if (!bar.seen)
            continue;
        const BarStyle &style = pen.use(source.styleOf[bar.index]);
        painter.drawRect(barRect(bar.ends, image.height(), style.half, first, last));
    }
    blendRun(image, source, scale, narrow, run.second, first, last);
}

void BarStripPainter::blendRun(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                               std::size_t end, int first, int last)
{
    if (begin >= end)
        return;
    const SpanIndex &spans = *source.spans;
    const double x0 = scale.positionOf(recordTimeFromTicks(spans.begin(begin)));
    const double x1 = scale.positionOf(recordTimeFromTicks(spans.begin(end - 1)));
    const int from = int(std::clamp(std::floor(x0) - 2, double(first), double(last)));
    const int to = int(std::clamp(std::floor(x1) + 3, double(first), double(last)));
    // A bar without width reaches half a column and what one phase is; it doesn't begin behind its middle.
    const std::int64_t reach = scale.ticksPerPixel / 2 + scale.ticksPerPixel / barPhases + 2;
    std::size_t behind = begin;
    m_met = 0;
    for (int x = from; x < to; ++x) {
        const std::int64_t until = saturatedAdd(ticksOf(scale.tickAt(std::int64_t(x) + 1)), reach);
        const std::size_t previous = std::exchange(behind, std::clamp(spans.lowerBound(until), begin, end));
        // The next column is likely to be like this one.
        const std::size_t likely = 2 * behind - previous;
        spans.fetch(likely - std::min({likely, m_met, mostFetched}), likely);
        // Most columns come out right at the first attempt, and all at the last, which takes nothing to be hidden.
        for (const int clearingAlpha : {36, 96, 256})
            if (m_layers.blend(image, x, m_stamps, findLayers(source, scale, begin, behind, x, clearingAlpha)))
                break;
    }
}

/// Walks back from the last bar that can touch the column until nothing beneath would be seen.
BarCover BarStripPainter::findLayers(const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                                     std::size_t end, int x, int clearingAlpha)
{
    const SpanIndex &spans = *source.spans;
    const std::int64_t from = ticksOf(scale.tickAt(std::int64_t(x) - 2)); // what begins earlier ends too early
    const BarMiddles middles(scale, x - 1);
    bool visible[Shapes] = {true, true, false};
    BarCover cover(clearingAlpha);
    m_layers.clear();
    std::size_t i = end;
    while (i > begin) {
        SpanIndex::Times bars = spans.timesBefore(i, std::min(barsAtOnce, i - begin));
        const std::size_t early =
            std::size_t(std::lower_bound(bars.begins, bars.begins + bars.size, from) - bars.begins);
        bars = {bars.begins + early, bars.ends + early, bars.size - early};
        i -= bars.size;
        const Outline *outlines[barsAtOnce];
        for (std::size_t k = 0; k < bars.size; ++k)
            outlines[k] = &m_outlines[source.styleOf[i + k]];
        addLayers(bars, outlines, middles, visible, cover);
        if (early != 0)
            break;
        if (cover.hides(m_stamps.touched(false) | m_stamps.touched(true)))
            break;
        if (visible[Half] && cover.hides(m_stamps.touched(true))) {
            visible[Half] = false;
            m_layers.seal(m_stamps.touched(true));
        }
    }
    m_met = end - i;
    return cover;
}

void BarStripPainter::addLayers(const SpanIndex::Times &bars, const Outline *const *outlines, const BarMiddles &middles,
                                const bool *visible, BarCover &cover)
{
    const BarStamps::Reach reach = m_stamps.reach();
    int positions[barsAtOnce];
    middles.find(bars, positions);
    BarCover covered = cover;
    BarLayers::Layer *layer = m_layers.room(bars.size);
    for (std::size_t k = bars.size; k-- > 0;) {
        const Shape shape = outlines[k]->shape;
        const int position = positions[k];
        if (position < reach.first || position >= reach.first + reach.count || !visible[shape])
            continue;
        const BarStamp &stamp = m_stamps.ofPositions(shape == Half)[position];
        *layer++ = {&stamp.alphas, &outlines[k]->color};
        covered.add(stamp);
    }
    m_layers.addTo(layer);
    cover = covered;
}

} // namespace Tsb
