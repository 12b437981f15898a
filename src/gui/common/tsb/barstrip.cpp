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

/// The channels of a colour, 16 bits apart, so that they are multiplied at once.
inline std::uint64_t spread(QRgb color)
{
    return std::uint64_t(color & 0xff00ff) | std::uint64_t((color >> 8) & 0xff00ff) << 32;
}

inline QRgb gathered(std::uint64_t channels)
{
    return 0xff000000u | QRgb(channels & 0xff00ff) | QRgb(channels >> 32 & 0xff) << 8;
}

/// multiplied() of each channel.
inline std::uint64_t multipliedChannels(std::uint64_t channels, std::uint32_t a)
{
    const std::uint64_t t = channels * a;
    return (t + ((t >> 8) & 0x00ff00ff00ff00ffu) + 0x0080008000800080u) >> 8 & 0x00ff00ff00ff00ffu;
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
            auto &through = m_stamps[kind].through[std::size_t(place)];
            alphas.assign(std::size_t(m_rowClasses), 0);
            through.assign(std::size_t(m_rowClasses), 1);
            for (const auto &entry : classes) {
                const std::uint8_t alpha = entry.first[std::size_t(kind * phases * stampColumns + place)];
                const float open = float(255 - alpha) / 255;
                alphas[std::size_t(entry.second)] = alpha;
                through[std::size_t(entry.second)] = open * open;
            }
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
        // The cheap tests first: most bars are decided by them.
        if (saturatedSubtract(spans.greatestEndOfBlock(i), spans.leastBeginOfBlock(i)) <= scale.ticksPerPixel) {
            i |= SpanIndex::blockSize - 1; // a block that lies within a pixel
            continue;
        }
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

int BarStripPainter::phaseOf(const SpanIndex &spans, const TimeScale &scale, std::size_t i, int base)
{
    const std::int64_t begin = spans.begin(i), end = spans.end(i), origin = ticksOf(scale.tickAt(base));
    std::int64_t fromBase;
    if (end >= begin && end - begin <= scale.ticksPerPixel && !__builtin_sub_overflow(begin, origin, &fromBase) &&
        std::abs(fromBase) < 64 * scale.ticksPerPixel) {
        // Without a division. Where rounding could tell, it is left to the formula below.
        constexpr double doubt = 1e-6;
        constexpr int positive = 128 * phases; // truncation is to round down
        const double exact = double(2 * fromBase + (end - begin)) * (0.5 * phases / double(scale.ticksPerPixel));
        const double part = exact + positive - double(int(exact + positive));
        if (part > doubt && part < 1 - doubt)
            return int(exact + positive) - positive;
    }
    const double columns = std::clamp(barEnds(spans, scale, i).x0 - base, -1000.0, 1000.0);
    return int(columns * phases); // exact: on the raster engine's grid
}

/// Walks back from the last bar that can touch the column until nothing beneath would be seen, then blends what was
/// met, the oldest first.
void BarStripPainter::blendColumn(QImage &image, const BarStripSource &source, const TimeScale &scale,
                                  std::size_t begin, std::size_t end, int x)
{
    const SpanIndex &spans = *source.spans;
    // A bar without width reaches half a column and what one phase is; it doesn't begin behind its middle.
    const std::int64_t reach = scale.ticksPerPixel / 2 + scale.ticksPerPixel / phases + 2;
    const std::int64_t until = saturatedAdd(ticksOf(scale.tickAt(std::int64_t(x) + 1)), reach);
    const std::int64_t from = ticksOf(scale.tickAt(std::int64_t(x) - 2));
    std::size_t i = end - begin <= shortRun ? end : std::clamp(spans.lowerBound(until), begin, end);
    const auto classes = std::size_t(m_rowClasses);
    m_layers.clear();
    m_remaining.assign(classes, 1);
    m_strongest.assign(classes, 0);
    for (std::vector<float> *sums : {&m_red, &m_green, &m_blue})
        sums->assign(classes, 0);
    std::size_t coveredRows = 0; // row classes from the first on; what is covered stays so
    while (i > begin && coveredRows < classes) {
        --i;
        if (spans.begin(i) < from)
            break;
        const BarStyle &style = (*source.styles)[source.styleOf(i)];
        if (style.pen.style() == Qt::NoPen) // without width there is nothing to fill
            continue;
        const int position = phaseOf(spans, scale, i, x - 1);
        const int place = 2 - (position >> phaseBits);
        if (place < 0 || place >= stampColumns)
            continue;
        const auto stamp = std::size_t((position & (phases - 1)) * stampColumns + place);
        const std::vector<std::uint8_t> &alphas = m_stamps[style.half].alphas[stamp];
        const float *const through = m_stamps[style.half].through[stamp].data();
        const QRgb color = style.pen.color().rgb();
        const auto red = float(qRed(color)), green = float(qGreen(color)), blue = float(qBlue(color));
        bool touches = false;
        for (std::size_t row = 0; row < classes; ++row) {
            const float weight = m_remaining[row] * (1 - through[row]);
            m_red[row] += weight * red;
            m_green[row] += weight * green;
            m_blue[row] += weight * blue;
            m_remaining[row] *= through[row];
            m_strongest[row] = std::max(m_strongest[row], alphas[row]);
            touches = touches || alphas[row] != 0;
        }
        if (touches)
            m_layers.push_back({alphas.data(), color});
        while (coveredRows < classes && m_remaining[coveredRows] < invisibleWeight &&
               m_strongest[coveredRows] >= clearingAlpha)
            ++coveredRows;
    }
    if (m_layers.empty())
        return;
    blendLayers(image, x, coveredRows == classes);
}

/// What the layers come to, in real numbers, over anything.
QRgb BarStripPainter::meanOfLayers(int row) const
{
    const auto r = std::size_t(row);
    const float all = std::max(1 - m_remaining[r], 1e-6f);
    const auto channel = [all](float sum) { return int(sum / all + 0.5f); };
    return qRgb(channel(m_red[r]), channel(m_green[r]), channel(m_blue[r]));
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
            std::uint64_t channels = spread(covered ? meanOfLayers(row) : pixel);
            for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer) {
                if (const std::uint32_t alpha = layer->alphas[row]) { // two lines, one upon the other
                    const std::uint64_t over = multipliedChannels(spread(layer->color), alpha);
                    channels = over + multipliedChannels(channels, 255 - alpha);
                    channels = over + multipliedChannels(channels, 255 - alpha);
                }
            }
            last.result = gathered(channels);
        }
        pixel = last.result;
    }
}

} // namespace Tsb
