#include "gui/common/tsb/barstrip.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <map>

namespace Tsb {

namespace {

/// A bar's ends as they are drawn: half a pixel in from both sides, and without width where that leaves nothing.
struct BarEnds {
    double x0 = 0, x1 = 0;
    bool hasWidth() const { return x1 > x0; }
};

/// A position as whole columns and ticks of the next one: a scale that is moved by whole columns moves every bar by
/// exactly that, so that a picture that was shifted goes on as if it were drawn anew.
struct ExactPosition {
    std::int64_t columns = 0, rest = 0;
};

ExactPosition exactPosition(const TimeScale &scale, std::int64_t tick)
{
    constexpr std::int64_t farColumn = std::int64_t(1) << 40;
    std::int64_t span;
    if (__builtin_sub_overflow(tick, ticksOf(scale.originTick), &span))
        return {tick < ticksOf(scale.originTick) ? -farColumn : farColumn, 0};
    ExactPosition position{span / scale.ticksPerPixel, span % scale.ticksPerPixel};
    if (position.rest < 0) {
        --position.columns;
        position.rest += scale.ticksPerPixel;
    }
    position.columns = std::clamp(saturatedAdd(position.columns, scale.originPixel), -farColumn, farColumn);
    return position;
}

/// The raster engine rounds to 64ths of a pixel towards zero, which left of the image is the other way: done here, the
/// same way on both sides, and in whole numbers, since the last digit of a real one depends on the column.
BarEnds barEnds(const SpanIndex &spans, const TimeScale &scale, std::size_t i)
{
    const ExactPosition begin = exactPosition(scale, spans.begin(i)), end = exactPosition(scale, spans.end(i));
    const std::int64_t ticks = scale.ticksPerPixel;
    const std::int64_t columns = end.columns - begin.columns;
    if (columns > 1 || (columns == 1 && end.rest > begin.rest))
        return {double(64 * begin.columns + 64 * begin.rest / ticks + 32) / 64,
                double(64 * end.columns + 64 * end.rest / ticks - 32) / 64};
    const std::int64_t middle = 32 * (begin.columns + end.columns) + 32 * (begin.rest + end.rest) / ticks;
    return {double(middle) / 64, double(middle) / 64};
}

double barHeight(int stripHeight, bool half)
{
    const double full = stripHeight - 3;
    return half ? std::max(full * 0.5 - 2, 1.0) : full;
}

QRectF barRect(const BarEnds &ends, int stripHeight, bool half, int first, int last)
{
    // Held near the columns drawn: coordinates of a far zoom are beyond what the rasterizer can take.
    const double margin = 16;
    const double x0 = std::max(ends.x0, first - margin), x1 = std::min(ends.x1, last + margin);
    const double height = barHeight(stripHeight, half);
    return QRectF(x0, stripHeight * 0.5 - height * 0.5, std::max(0.0, x1 - x0), height);
}

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

/// x * a / 255, rounded as the raster engine rounds it.
inline std::uint32_t multiplied(std::uint32_t x, std::uint32_t a)
{
    const std::uint32_t t = x * a;
    return (t + (t >> 8) + 0x80) >> 8;
}

inline QRgb blended(QRgb below, QRgb color, std::uint32_t alpha)
{
    const auto channel = [alpha](int under, int over) {
        return multiplied(std::uint32_t(over), alpha) + multiplied(std::uint32_t(under), 255 - alpha);
    };
    return qRgb(int(channel(qRed(below), qRed(color))), int(channel(qGreen(below), qGreen(color))),
                int(channel(qBlue(below), qBlue(color))));
}

/// A bar without width is outlined by two lines that lie on each other. From what both cover together, the coverage of
/// each.
std::uint8_t coverageOfOneLine(int ofBoth)
{
    int best = 0, bestDistance = 256;
    for (int a = 0; a < 256; ++a) {
        const int left = int(multiplied(multiplied(255, std::uint32_t(255 - a)), std::uint32_t(255 - a)));
        const int distance = std::abs(255 - left - ofBoth);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = a;
        }
    }
    return std::uint8_t(best);
}

constexpr float invisibleWeight = 1.0f / 512;
/// Many faint layers leave a trace of what they cover, since each step is rounded; one of this coverage leaves at
/// most 2.
constexpr std::uint8_t clearingAlpha = 60;
/// Shorter runs of bars below a pixel aren't worth a search for each column.
constexpr std::size_t shortRun = 48;

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
        const BarStyle &style = pen.use(source.styleOf(i));
        painter.drawRect(barRect(barEnds(*source.spans, scale, i), height, style.half, first, last));
    }
}

/// Learns from the painter what bars without width cover, and which rows are alike in that.
void BarStripPainter::prepare(int height)
{
    if (height == m_height)
        return;
    m_height = height;
    std::vector<std::vector<std::uint8_t>> rows; // all alphas of a row, both kinds of bar
    rows.resize(std::size_t(height));
    for (const bool half : {false, true}) {
        for (int phase = 0; phase < phases; ++phase) {
            QImage probe(stampColumns, height, QImage::Format_ARGB32_Premultiplied);
            probe.fill(Qt::white);
            QPainter painter(&probe);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(QBrush(Qt::black), 0, Qt::SolidLine, Qt::SquareCap));
            const double x = 1 + double(phase) / phases;
            const double bar = barHeight(height, half);
            painter.drawRect(QRectF(x, height * 0.5 - bar * 0.5, 0, bar));
            painter.end();
            for (int y = 0; y < height; ++y)
                for (int column = 0; column < stampColumns; ++column)
                    rows[std::size_t(y)].push_back(coverageOfOneLine(255 - qRed(probe.pixel(column, y))));
        }
    }
    std::map<std::vector<std::uint8_t>, int> classes;
    m_rowClass.assign(std::size_t(height), -1);
    for (int y = 0; y < height; ++y) {
        const auto &row = rows[std::size_t(y)];
        if (std::all_of(row.begin(), row.end(), [](std::uint8_t alpha) { return alpha == 0; }))
            continue;
        m_rowClass[std::size_t(y)] = classes.emplace(row, int(classes.size())).first->second;
    }
    m_rowClasses = int(classes.size());
    for (int kind = 0; kind < 2; ++kind)
        for (int place = 0; place < phases * stampColumns; ++place) {
            auto &alphas = m_stamps[kind].alphas[std::size_t(place)];
            alphas.assign(std::size_t(m_rowClasses), 0);
            for (const auto &entry : classes)
                alphas[std::size_t(entry.second)] = entry.first[std::size_t(kind * phases * stampColumns + place)];
        }
}

void BarStripPainter::draw(QPainter &painter, QImage &image, const BarStripSource &source, const TimeScale &scale,
                           int first, int last)
{
    prepare(image.height());
    const SpanIndex &spans = *source.spans;
    const auto run = barRun(spans, scale, first, last);
    BarPen pen(painter, *source.styles);
    std::size_t narrow = run.first; // where the present run of bars below a pixel begins
    for (std::size_t i = run.first; i < run.second; ++i) {
        // The cheap test first: most bars are decided by it.
        if (saturatedSubtract(spans.end(i), spans.begin(i)) <= scale.ticksPerPixel)
            continue;
        const BarEnds ends = barEnds(spans, scale, i);
        if (!ends.hasWidth())
            continue;
        blendRun(image, source, scale, narrow, i, first, last);
        narrow = i + 1;
        const BarStyle &style = pen.use(source.styleOf(i));
        painter.drawRect(barRect(ends, image.height(), style.half, first, last));
    }
    blendRun(image, source, scale, narrow, run.second, first, last);
}

void BarStripPainter::blendRun(QImage &image, const BarStripSource &source, const TimeScale &scale, std::size_t begin,
                               std::size_t end, int first, int last)
{
    if (begin >= end)
        return;
    const double x0 = scale.positionOf(recordTimeFromTicks(source.spans->begin(begin)));
    const double x1 = scale.positionOf(recordTimeFromTicks(source.spans->begin(end - 1)));
    const int from = int(std::clamp(std::floor(x0) - 2, double(first), double(last)));
    const int to = int(std::clamp(std::floor(x1) + 3, double(first), double(last)));
    for (int x = from; x < to; ++x)
        blendColumn(image, source, scale, begin, end, x);
}

/// Walks back from the last bar that can touch the column until nothing beneath would be seen, then blends what was
/// met, the oldest first.
void BarStripPainter::blendColumn(QImage &image, const BarStripSource &source, const TimeScale &scale,
                                  std::size_t begin, std::size_t end, int x)
{
    const SpanIndex &spans = *source.spans;
    const std::int64_t until = ticksOf(scale.tickAt(std::int64_t(x) + 2));
    const std::int64_t from = ticksOf(scale.tickAt(std::int64_t(x) - 2));
    std::size_t i = end - begin <= shortRun ? end : std::clamp(spans.lowerBound(until), begin, end);
    m_layers.clear();
    m_covers.assign(std::size_t(m_rowClasses), RowCover());
    bool covered = false;
    while (i > begin) {
        --i;
        if (spans.begin(i) < from)
            break;
        const BarStyle &style = (*source.styles)[source.styleOf(i)];
        if (style.pen.style() == Qt::NoPen) // without width there is nothing to fill
            continue;
        const BarEnds ends = barEnds(spans, scale, i);
        if (std::abs(ends.x0 - x) > stampColumns)
            continue;
        const int position = int(ends.x0 * phases); // exact: on the raster engine's grid
        const int column = position >> phaseBits;
        const int place = x - column + 1;
        if (place < 0 || place >= stampColumns)
            continue;
        const int phase = position & (phases - 1);
        const auto &alphas = m_stamps[style.half].alphas[std::size_t(phase * stampColumns + place)];
        bool touches = false;
        covered = true;
        for (int row = 0; row < m_rowClasses; ++row) {
            const std::uint8_t alpha = alphas[std::size_t(row)];
            RowCover &cover = m_covers[std::size_t(row)];
            const float through = float(255 - alpha) / 255;
            cover.remaining *= through * through;
            cover.strongest = std::max(cover.strongest, alpha);
            touches = touches || alpha != 0;
            covered = covered && cover.remaining < invisibleWeight && cover.strongest >= clearingAlpha;
        }
        if (touches)
            m_layers.push_back({alphas.data(), style.pen.color().rgb()});
        if (covered)
            break;
    }
    if (m_layers.empty())
        return;
    blendLayers(image, x, covered);
}

/// What the layers come to, in real numbers, over anything.
QRgb BarStripPainter::meanOfLayers(int row) const
{
    float red = 0, green = 0, blue = 0, open = 1;
    for (const Layer &layer : m_layers) { // the newest first
        const float through = float(255 - layer.alphas[row]) / 255;
        const float weight = open * (1 - through * through);
        red += weight * float(qRed(layer.color));
        green += weight * float(qGreen(layer.color));
        blue += weight * float(qBlue(layer.color));
        open *= through * through;
    }
    const float all = std::max(1 - open, 1e-6f);
    return qRgb(int(red / all + 0.5f), int(green / all + 0.5f), int(blue / all + 0.5f));
}

/// Where what lies beneath is covered, blending starts from the mean of the layers: rounding to whole numbers keeps a
/// last trace of whatever it starts from, which would be that of the background here and that of earlier bars there.
void BarStripPainter::blendLayers(QImage &image, int x, bool covered)
{
    // Rows of one class over the same background come to the same colour: most rows do.
    struct Known {
        QRgb below = 0, result = 0;
    };
    std::vector<Known> known; // no pixel of a strip is transparent, as 0 would be
    known.resize(std::size_t(m_rowClasses));
    for (int y = 0; y < image.height(); ++y) {
        const int row = m_rowClass[std::size_t(y)];
        if (row < 0)
            continue;
        QRgb &pixel = reinterpret_cast<QRgb *>(image.scanLine(y))[x];
        Known &last = known[std::size_t(row)];
        if (last.below != pixel) {
            last.below = pixel;
            last.result = covered ? meanOfLayers(row) : pixel;
            for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer)
                if (const std::uint32_t alpha = layer->alphas[row])
                    last.result = blended(blended(last.result, layer->color, alpha), layer->color, alpha);
        }
        pixel = last.result;
    }
}

} // namespace Tsb
