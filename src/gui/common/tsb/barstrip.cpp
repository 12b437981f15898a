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
    m_paddedClasses = (classes.size() + rowsAtOnce - 1) / rowsAtOnce * rowsAtOnce;
    for (std::size_t kind = 0; kind < 2; ++kind)
        for (std::size_t place = 0; place < m_stamps[kind].size(); ++place) {
            Stamp &stamp = m_stamps[kind][place];
            stamp = Stamp();
            stamp.alphas.assign(m_paddedClasses, 0);
            stamp.through.assign(m_paddedClasses, 1);
            stamp.lanes.assign(4 * m_paddedClasses, 0);
            for (const auto &entry : classes) {
                const auto row = std::size_t(entry.second);
                const std::uint8_t alpha = entry.first[kind * m_stamps[kind].size() + place];
                const float open = float(255 - alpha) / 255;
                stamp.touches = stamp.touches || alpha != 0;
                stamp.alphas[row] = alpha;
                stamp.through[row] = open * open;
                std::fill_n(stamp.lanes.begin() + std::ptrdiff_t(4 * row), 4, alpha);
            }
        }
}

void BarStripPainter::prepareColors(const std::vector<BarStyle> &styles)
{
    m_penColors.resize(styles.size());
    for (std::size_t i = 0; i < styles.size(); ++i) {
        PenColor &pen = m_penColors[i];
        pen.color = styles[i].pen.color().rgb();
        for (std::size_t lane = 0; lane < pen.lanes.size(); ++lane)
            pen.lanes[lane] = std::uint16_t(pen.color >> 8 * (lane % 4) & 0xff); // blue, green, red, 255
    }
}

void BarStripPainter::draw(QPainter &painter, QImage &image, const BarStripSource &source, const TimeScale &scale,
                           int first, int last)
{
    prepare(image.height());
    prepareColors(*source.styles);
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

namespace {

/// Where the middles of bars below a pixel lie, in 64ths of a column from the left of one column.
class PhaseFinder {
public:
    PhaseFinder(const SpanIndex &spans, const TimeScale &scale, int column, int phases)
        : m_spans(spans), m_scale(scale), m_column(column), m_phases(phases), m_origin(ticksOf(scale.tickAt(column))),
          m_factor(0.5 * phases / double(scale.ticksPerPixel)), m_positive(128 * phases)
    {
    }
    int operator()(std::size_t i) const
    {
        const std::int64_t begin = m_spans.begin(i), end = m_spans.end(i);
        std::int64_t from;
        if (end >= begin && end - begin <= m_scale.ticksPerPixel && !__builtin_sub_overflow(begin, m_origin, &from) &&
            std::abs(from) < 64 * m_scale.ticksPerPixel) {
            // Without a division. Where rounding could tell, it is left to the formula below.
            constexpr double doubt = 1e-6;
            const double exact = double(2 * from + (end - begin)) * m_factor + m_positive; // truncation rounds down
            const int whole = int(exact);
            const double part = exact - whole;
            if (part > doubt && part < 1 - doubt)
                return whole - m_positive;
        }
        const double columns = std::clamp(barEnds(m_spans, m_scale, i).x0 - m_column, -1000.0, 1000.0);
        return int(columns * m_phases); // exact: on the raster engine's grid
    }

private:
    const SpanIndex &m_spans;
    const TimeScale &m_scale;
    int m_column;
    int m_phases;
    std::int64_t m_origin;
    double m_factor;
    int m_positive;
};

// A few numbers at once: constant counts of numbers that don't overlap.

template<std::size_t count>
void takeWeights(float *__restrict remaining, const float *__restrict through, float *__restrict weights)
{
    for (std::size_t i = 0; i < count; ++i) {
        weights[i] = remaining[i] * (1 - through[i]);
        remaining[i] *= through[i];
    }
}

template<std::size_t count>
void addWeighted(float *__restrict sums, const float *__restrict weights, float value)
{
    for (std::size_t i = 0; i < count; ++i)
        sums[i] += weights[i] * value;
}

template<std::size_t count>
void keepGreatest(std::uint8_t *__restrict greatest, const std::uint8_t *__restrict values)
{
    for (std::size_t i = 0; i < count; ++i)
        greatest[i] = greatest[i] < values[i] ? values[i] : greatest[i];
}

/// multiplied(), which fits into 16 bits.
inline std::uint16_t multipliedLane(std::uint16_t value, std::uint16_t alpha)
{
    const auto t = std::uint16_t(value * alpha);
    return std::uint16_t(std::uint16_t(t + (t >> 8) + 0x80) >> 8);
}

/// blended() twice: a bar's two lines, one upon the other.
template<std::size_t count>
void blendTwice(std::uint16_t *__restrict lanes, const std::uint16_t *__restrict color,
                const std::uint16_t *__restrict alphas)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto open = std::uint16_t(255 - alphas[i]);
        const std::uint16_t over = multipliedLane(color[i], alphas[i]);
        const auto once = std::uint16_t(over + multipliedLane(lanes[i], open));
        lanes[i] = std::uint16_t(over + multipliedLane(once, open));
    }
}

} // namespace

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
    std::size_t i = end;
    if (end - begin > shortRun) {
        i = std::clamp(spans.lowerBound(until), begin, end);
        spans.fetchAround(saturatedAdd(until, scale.ticksPerPixel)); // for the next column
    }
    m_layers.clear();
    m_remaining.assign(m_paddedClasses, 1);
    m_strongest.assign(m_paddedClasses, 0);
    for (std::vector<float> *sums : {&m_red, &m_green, &m_blue})
        sums->assign(m_paddedClasses, 0);
    const PhaseFinder phaseOf(spans, scale, x - 1, phases);
    const auto classes = std::size_t(m_rowClasses);
    std::size_t coveredRows = 0; // row classes from the first on; what is covered stays so
    while (i > begin && coveredRows < classes) {
        --i;
        if (spans.begin(i) < from)
            break;
        const std::uint8_t styleIndex = source.styleOf(i);
        const BarStyle &style = (*source.styles)[styleIndex];
        if (style.pen.style() == Qt::NoPen) // without width there is nothing to fill
            continue;
        const int position = phaseOf(i);
        const int place = 2 - (position >> phaseBits);
        if (place < 0 || place >= stampColumns)
            continue;
        const Stamp &stamp = m_stamps[style.half][std::size_t((position & (phases - 1)) * stampColumns + place)];
        if (!stamp.touches)
            continue;
        addLayer(stamp, styleIndex);
        while (coveredRows < classes && m_remaining[coveredRows] < invisibleWeight &&
               m_strongest[coveredRows] >= clearingAlpha)
            ++coveredRows;
    }
    if (coveredRows == classes && !m_layers.empty())
        blendOverMean(image, x);
    else
        blendLayers(image, x);
}

/// Puts a layer beneath those that are there.
void BarStripPainter::addLayer(const Stamp &stamp, std::uint8_t style)
{
    m_layers.push_back({&stamp, style});
    const QRgb color = m_penColors[style].color;
    for (std::size_t first = 0; first < m_paddedClasses; first += rowsAtOnce) {
        float weights[rowsAtOnce];
        takeWeights<rowsAtOnce>(m_remaining.data() + first, stamp.through.data() + first, weights);
        addWeighted<rowsAtOnce>(m_red.data() + first, weights, float(qRed(color)));
        addWeighted<rowsAtOnce>(m_green.data() + first, weights, float(qGreen(color)));
        addWeighted<rowsAtOnce>(m_blue.data() + first, weights, float(qBlue(color)));
        keepGreatest<rowsAtOnce>(m_strongest.data() + first, stamp.alphas.data() + first);
    }
}

/// What the layers come to, in real numbers, over anything.
QRgb BarStripPainter::meanOfLayers(std::size_t row) const
{
    const float all = std::max(1 - m_remaining[row], 1e-6f);
    const auto channel = [all](float sum) { return int(sum / all + 0.5f); };
    return qRgb(channel(m_red[row]), channel(m_green[row]), channel(m_blue[row]));
}

/// Where what lies beneath is covered, blending starts from the mean of the layers: rounding to whole numbers keeps a
/// last trace of whatever it starts from, which would be that of the background here and that of earlier bars there.
/// So all rows of a class get the same colour, and all classes are worked out at once.
void BarStripPainter::blendOverMean(QImage &image, int x)
{
    m_lanes.assign(4 * m_paddedClasses, 0);
    for (std::size_t row = 0; row < std::size_t(m_rowClasses); ++row) {
        const QRgb mean = meanOfLayers(row);
        const std::array<int, 4> channels{qBlue(mean), qGreen(mean), qRed(mean), 255};
        std::copy(channels.begin(), channels.end(), m_lanes.begin() + std::ptrdiff_t(4 * row));
    }
    constexpr std::size_t lanesAtOnce = 4 * rowsAtOnce;
    for (std::size_t first = 0; first < m_lanes.size(); first += lanesAtOnce)
        for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer)
            blendTwice<lanesAtOnce>(m_lanes.data() + first, m_penColors[layer->style].lanes.data(),
                                    layer->stamp->lanes.data() + first);
    for (int y = 0; y < image.height(); ++y) {
        const int row = m_rowClass[std::size_t(y)];
        if (row < 0)
            continue;
        const std::uint16_t *const lanes = m_lanes.data() + 4 * row;
        reinterpret_cast<QRgb *>(image.scanLine(y))[x] = qRgb(lanes[2], lanes[1], lanes[0]);
    }
}

/// Over what is there.
void BarStripPainter::blendLayers(QImage &image, int x) const
{
    if (m_layers.empty())
        return;
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
            last.result = pixel;
            for (auto layer = m_layers.rbegin(); layer != m_layers.rend(); ++layer)
                if (const std::uint32_t alpha = layer->stamp->alphas[std::size_t(row)]) { // two lines on each other
                    const QRgb color = m_penColors[layer->style].color;
                    last.result = blended(blended(last.result, color, alpha), color, alpha);
                }
        }
        pixel = last.result;
    }
}

} // namespace Tsb
