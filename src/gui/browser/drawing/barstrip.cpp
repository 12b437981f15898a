#include "gui/browser/drawing/barstrip.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace Tsb {

namespace {

/// The raster engine rounds a corner at the edge of what it may draw on unlike one amid it. With so many columns more
/// on both sides, which are thrown away, a column comes out the same whether it is drawn alone or with all others.
constexpr int edgeMargin = 8;

/// A position as whole columns and ticks of the next one: a scale that is moved by whole columns moves every bar by
/// exactly that, so that a picture that was shifted goes on as if it were drawn anew.
struct ExactPosition {
    std::int64_t column = 0, rest = 0;
};

ExactPosition exactPosition(const TimeScale &scale, std::int64_t tick)
{
    constexpr std::int64_t farColumn = std::int64_t(1) << 40;
    std::int64_t span;
    if (__builtin_sub_overflow(tick, ticksOf(scale.originTick), &span))
        return {tick < ticksOf(scale.originTick) ? -farColumn : farColumn, 0};
    ExactPosition position{span / scale.ticksPerPixel, span % scale.ticksPerPixel};
    if (position.rest < 0) {
        --position.column;
        position.rest += scale.ticksPerPixel;
    }
    position.column = std::clamp(saturatedAdd(position.column, scale.originPixel), -farColumn, farColumn);
    return position;
}

/// In 64ths of a column, as the raster engine has them: it would round towards zero, which left of the image is the
/// other way.
double roundedDown(const ExactPosition &position, std::int64_t ticksPerPixel)
{
    const std::int64_t sixtyFourths = 64 * position.rest / ticksPerPixel;
    return double(position.column) + double(sixtyFourths) / 64;
}

double barHeight(int stripHeight, bool half)
{
    const double full = stripHeight - 3;
    return half ? std::max(full * 0.5 - 2, 1.0) : full;
}

/// Whether a bar with its outline of one pixel covers half of the row or more.
bool reachesRow(int y, int stripHeight, bool half)
{
    const double reach = (barHeight(stripHeight, half) + 1) * 0.5, centre = stripHeight * 0.5;
    return std::min(y + 1.0, centre + reach) - std::max(double(y), centre - reach) >= 0.5;
}

/// The pen of a style of bars.
struct Pen {
    std::size_t style;
    double red, green, blue;
};

/// Those of the styles that have one and are of these heights.
std::vector<Pen> pensOf(const std::vector<BarStyle> &styles, bool full, bool half)
{
    std::vector<Pen> pens;
    for (std::size_t i = 0; i < styles.size(); ++i) {
        const QRgb color = styles[i].pen.color().rgb();
        if (styles[i].pen.style() != Qt::NoPen && (styles[i].half ? half : full))
            pens.push_back({i, double(qRed(color)), double(qGreen(color)), double(qBlue(color))});
    }
    return pens;
}

/// The mean of the pens, weighted by the lengths of their styles; 0 if all of these are.
QRgb meanOf(const std::vector<Pen> &pens, const std::uint64_t *lengths)
{
    double red = 0, green = 0, blue = 0, all = 0;
    for (const Pen &pen : pens) {
        const auto length = double(lengths[pen.style]);
        red += length * pen.red;
        green += length * pen.green;
        blue += length * pen.blue;
        all += length;
    }
    return all == 0 ? 0 : qRgb(qRound(red / all), qRound(green / all), qRound(blue / all));
}

} // namespace

void BarStripPainter::draw(QPainter &painter, int height, const BarStripSource &source, const TimeScale &scale,
                           int first, int last)
{
    prepareImage(last - first + 2 * edgeMargin, height, source.styles->size());
    TimeScale imageScale = scale;
    imageScale.originPixel = saturatedSubtract(scale.originPixel, first - edgeMargin);
    sortBars(source, imageScale);
    hideWideBars();
    drawWideBars(source);
    paintColumns(*source.styles);
    painter.drawImage(first, 0, m_image, edgeMargin, 0, last - first, height);
}

void BarStripPainter::prepareImage(int width, int height, std::size_t styles)
{
    if (m_image.size() != QSize(width, height))
        m_image = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
    m_image.fill(Qt::white);
    m_lengths.assign((std::size_t(width) + 1) * styles, 0); // the last for what is outside
    m_wide.clear();
}

/// Puts the bars that the image may show into the wide ones or into the lengths of their columns.
void BarStripPainter::sortBars(const BarStripSource &source, const TimeScale &scale)
{
    const SpanIndex &spans = *source.spans;
    const std::int64_t width = m_image.width();
    const std::int64_t from = ticksOf(scale.tickAt(-1)), until = ticksOf(scale.tickAt(width + 1));
    const std::size_t last = spans.lowerBound(until);
    const auto ticksPerPixel = std::uint64_t(scale.ticksPerPixel);
    std::uint64_t *column = nullptr; // that of the bar before, which is likely to be the next one's
    std::uint64_t columnBegin = 0, columnTicks = 0;
    for (std::size_t i = std::min(spans.firstEndingFrom(0, from), spans.lowerBound(from)); i < last;) {
        const SpanIndex::Run run = spans.runFrom(i);
        const std::uint8_t *const styles = source.styleOf + i;
        const std::size_t size = std::min(last - i, run.size);
        for (std::size_t k = 0; k < size; ++k) {
            const std::int64_t begin = run.begins[k], end = std::max(begin, run.ends[k]);
            const std::uint64_t length = std::uint64_t(end) - std::uint64_t(begin);
            if (length > ticksPerPixel) {
                addWide(i + k, begin, end, scale);
                continue;
            }
            const std::int64_t middle = begin + std::int64_t(length / 2);
            if (std::uint64_t(middle) - columnBegin >= columnTicks) {
                const std::int64_t x = exactPosition(scale, middle).column;
                column = &m_lengths[std::size_t(x >= 0 && x < width ? x : width) * source.styles->size()];
                columnBegin = std::uint64_t(ticksOf(scale.tickAt(x)));
                columnTicks = std::uint64_t(ticksOf(scale.tickAt(x + 1))) - columnBegin;
            }
            column[styles[k]] += std::max<std::uint64_t>(length, 1);
        }
        i += size;
    }
}

void BarStripPainter::addWide(std::size_t index, std::int64_t begin, std::int64_t end, const TimeScale &scale)
{
    const ExactPosition from = exactPosition(scale, begin), to = exactPosition(scale, end);
    if (from.column >= m_image.width() || to.column < 0)
        return;
    m_wide.push_back({index, from.column, to.column, roundedDown(from, scale.ticksPerPixel) + 0.5,
                      roundedDown(to, scale.ticksPerPixel) - 0.5, true});
}

void BarStripPainter::hideWideBars()
{
    // By its last column, the first column of the bar that was met last. First columns ascend, as begins do.
    std::unordered_map<std::int64_t, std::int64_t> met;
    for (auto bar = m_wide.rbegin(); bar != m_wide.rend(); ++bar) {
        const auto [known, isNew] = met.try_emplace(bar->lastColumn, bar->firstColumn);
        bar->seen = isNew || known->second != bar->firstColumn;
        known->second = bar->firstColumn;
    }
}

void BarStripPainter::drawWideBars(const BarStripSource &source)
{
    if (m_wide.empty())
        return;
    QPainter painter(&m_image);
    painter.setRenderHint(QPainter::Antialiasing);
    int present = -1; // setting pen and brush costs as much as a bar
    for (const WideBar &bar : m_wide) {
        if (!bar.seen)
            continue;
        const BarStyle &style = (*source.styles)[source.styleOf[bar.index]];
        if (present != source.styleOf[bar.index]) {
            present = source.styleOf[bar.index];
            painter.setPen(style.pen);
            painter.setBrush(style.brush);
        }
        // Coordinates of a far zoom are beyond what the rasterizer can take.
        const double x0 = std::max(bar.x0, -16.0), x1 = std::min(bar.x1, m_image.width() + 16.0);
        const double height = barHeight(m_image.height(), style.half);
        painter.drawRect(QRectF(x0, m_image.height() * 0.5 - height * 0.5, std::max(0.0, x1 - x0), height));
    }
}

void BarStripPainter::paintColumns(const std::vector<BarStyle> &styles)
{
    const int height = m_image.height();
    std::vector<QRgb> colors(std::size_t(m_image.width()));
    for (const auto &[full, half] : {std::pair(true, false), std::pair(false, true), std::pair(true, true)}) {
        const std::vector<Pen> pens = pensOf(styles, full, half);
        bool isKnown = false;
        for (int y = 0; y < height; ++y) {
            if (reachesRow(y, height, false) != full || reachesRow(y, height, true) != half)
                continue;
            for (std::size_t x = 0; !isKnown && x < colors.size(); ++x)
                colors[x] = meanOf(pens, &m_lengths[x * styles.size()]);
            isKnown = true;
            auto *const line = reinterpret_cast<QRgb *>(m_image.scanLine(y));
            for (std::size_t x = 0; x < colors.size(); ++x)
                line[x] = colors[x] == 0 ? line[x] : colors[x];
        }
    }
}

} // namespace Tsb
