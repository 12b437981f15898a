#include "gui/browser/drawing/spectrogramrenderer.h"

#include "gui/browser/drawing/zeromarks.h"
#include "util/decadelogarithm.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr std::size_t runsAtOnce = 256;

/// The values t * slope + base of a row of runs, whose colours are asked for.
struct RowValues {
    const double *slopes, *bases;
    std::size_t size;
    double t;

    double operator[](std::size_t i) const { return t * slopes[i] + bases[i]; }
};

/// A NaN has the colour of 0.
double heldNumber(double value)
{
    return std::isnan(value) ? 0.0 : value;
}

/// Colours by one multiplication and a table read. Two loops: the first reads no table, so that it can be done for
/// several values at once.
class TableLookup {
public:
    TableLookup(std::vector<uint> entries, std::size_t runs) : m_entries(std::move(entries)), m_indices(runs) {}

    void operator()(const RowValues &values, uint *colors)
    {
        const double *slopes = values.slopes, *bases = values.bases;
        const double t = values.t, top = double(m_entries.size() - 1);
        int *indices = m_indices.data();
        for (std::size_t i = 0; i < values.size; ++i) {
            const double v = t * slopes[i] + bases[i];
            const double low = v > 0 ? v : 0.0; // also for what is no number
            const double held = low < 1 ? low : 1.0;
            indices[i] = int(top * held);
        }
        const uint *entries = m_entries.data();
        for (std::size_t i = 0; i < values.size; ++i)
            colors[i] = entries[indices[i]];
    }

private:
    std::vector<uint> m_entries;
    std::vector<int> m_indices;
};

/// The same with a second table for values above a threshold.
class ZoneLookup {
public:
    ZoneLookup(const std::vector<uint> &table, const Colormap::ThresholdColormap &zones, std::size_t runs)
        : m_below(zoned(table, zones, zones.threshold()), runs),
          m_above(zoned(table, zones, std::numeric_limits<double>::infinity()), runs), m_aboveColors(runs),
          m_threshold(zones.threshold())
    {
    }

    void operator()(const RowValues &values, uint *colors)
    {
        m_below(values, colors);
        m_above(values, m_aboveColors.data());
        for (std::size_t i = 0; i < values.size; ++i)
            colors[i] = heldNumber(values[i]) > m_threshold ? m_aboveColors[i] : colors[i];
    }

private:
    static std::vector<uint> zoned(std::vector<uint> table, const Colormap::ThresholdColormap &zones, double at)
    {
        for (uint &color : table)
            color = zones.zoneColor(color, at);
        return table;
    }

    TableLookup m_below, m_above;
    std::vector<uint> m_aboveColors;
    double m_threshold;
};

/// Any other map, value by value.
struct MapLookup {
    const Colormap::Map &map;
    void operator()(const RowValues &values, uint *colors) const
    {
        for (std::size_t i = 0; i < values.size; ++i)
            colors[i] = map(heldNumber(values[i]));
    }
};

/// The colours of a map that is a table in itself; empty for any other.
std::vector<uint> tableOf(const Colormap::Map &map)
{
    if (const auto *cached = map.target<Colormap::CachedColormap>())
        return cached->entries();
    using Function = uint (*)(double);
    const Function *function = map.target<Function>();
    if (!function || *function != &Colormap::grayscale)
        return {};
    std::vector<uint> grays(256);
    for (std::size_t i = 0; i < grays.size(); ++i)
        grays[i] = 0xFF000000u | uint(i) * 0x010101u;
    return grays;
}

/// Calls the function with the quickest lookup that gives the map's colours.
template<typename Function>
void withLookup(const Colormap::Map &map, std::size_t runs, Function function)
{
    const auto *zones = map.target<Colormap::ThresholdColormap>();
    const std::vector<uint> table = tableOf(zones ? zones->inner() : map);
    if (table.empty())
        function(MapLookup{map});
    else if (zones)
        function(ZoneLookup(table, *zones, runs));
    else
        function(TableLookup(table, runs));
}

/// Some neighbouring runs.
struct Runs {
    const ColumnRun *first;
    std::size_t size;
};

/// The normalised logarithms of runs, bin by bin from the bottom of the strip: row k holds bin k of every run.
class LevelTable {
public:
    LevelTable(const SpectrogramParameters &parameters, std::size_t mostRuns)
        : m_parameters(parameters), m_bins(std::size_t(parameters.binCount)), m_levels(mostRuns * m_bins),
          m_smoothed(m_bins)
    {
    }

    void fill(const Runs &runs)
    {
        const SpectrogramParameters &p = m_parameters;
        m_runs = runs.size;
        for (std::size_t r = 0; r < m_runs; ++r) {
            const double *values = runs.first[r].values;
            if (p.smoothing) {
                multiplyRow(values, *p.smoothing, m_smoothed.data(), m_bins);
                values = m_smoothed.data();
            }
            for (std::size_t k = 0; k < m_bins; ++k)
                m_levels[k * m_runs + r] = values[p.reversedRows ? m_bins - 1 - k : k];
        }
        log10OfEach(m_levels.data(), m_levels.data(), m_runs * m_bins);
        const double lower = p.colorLower, span = p.colorUpper - lower;
        for (std::size_t i = 0; i < m_runs * m_bins; ++i)
            m_levels[i] = (m_levels[i] - lower) / span;
    }

    const double *bin(std::size_t k) const { return m_levels.data() + k * m_runs; }

private:
    const SpectrogramParameters &m_parameters;
    std::size_t m_bins;
    std::size_t m_runs = 0;
    std::vector<double> m_levels;
    std::vector<double> m_smoothed;
};

/// Copies one color per run to the columns of the runs.
class RunSpreader {
public:
    explicit RunSpreader(const Runs &runs)
    {
        for (std::size_t r = 0; r < runs.size; ++r) {
            const ColumnRun &run = runs.first[r];
            const bool single = run.right == run.left + 1;
            if (single && !m_pieces.empty() && m_pieces.back().single && m_pieces.back().right == run.left)
                ++m_pieces.back().right;
            else
                m_pieces.push_back({single, run.left, run.right, r});
        }
    }

    void spread(const uint *colors, uint *line) const
    {
        for (const Piece &piece : m_pieces) {
            if (piece.single)
                std::copy_n(colors + piece.run, piece.right - piece.left, line + piece.left);
            else
                std::fill(line + piece.left, line + piece.right, colors[piece.run]);
        }
    }

private:
    struct Piece {
        bool single; ///< of neighbouring runs that are one column wide, else of one run
        int left, right;
        std::size_t run; ///< the first
    };
    std::vector<Piece> m_pieces;
};

/// Paints runs whose levels are in the table, rows from left to right.
template<typename Lookup>
void paintRows(Lookup &lookup, const LevelTable &levels, const Runs &runs, int binCount, QImage &image)
{
    const RunSpreader spreader(runs);
    const std::size_t count = runs.size;
    std::vector<double> slopes(count), bases(count);
    std::vector<uint> colors(count);
    uchar *const bits = image.bits();
    const std::int64_t height = image.height(), intervals = binCount - 1;
    for (std::int64_t k = 0; k < intervals; ++k) {
        const auto yTop = int(height - k * height / intervals);
        const auto yBottom = int(height - (k + 1) * height / intervals);
        if (yTop <= yBottom)
            continue;
        const double *a = levels.bin(std::size_t(k));
        const double *b = levels.bin(std::size_t(k + 1));
        for (std::size_t r = 0; r < count; ++r) {
            const bool missing = std::isnan(a[r]) || std::isnan(b[r]);
            slopes[r] = missing || a[r] == b[r] ? 0.0 : a[r] - b[r]; // equal infinities have no difference
            bases[r] = missing ? 0.0 : b[r];
        }
        for (int y = yBottom; y < yTop; ++y) {
            const double t = double(y - yBottom) / (yTop - yBottom);
            lookup(RowValues{slopes.data(), bases.data(), count, t}, colors.data());
            spreader.spread(colors.data(), reinterpret_cast<uint *>(bits + std::ptrdiff_t(y) * image.bytesPerLine()));
        }
    }
}

/// Not inlined: the loops that every picture runs stay as the compiler lays them out alone.
[[gnu::noinline]] void markZerosOf(const std::vector<ColumnRun> &runs, const SpectrogramParameters &p, QImage &image)
{
    const auto colorOf = [&p, span = p.colorUpper - p.colorLower](double value) {
        return p.colormap(heldNumber((std::log10(value) - p.colorLower) / span));
    };
    std::vector<double> values(std::size_t(p.binCount));
    for (const ColumnRun &run : runs) {
        if (p.smoothing)
            multiplyRow(run.values, *p.smoothing, values.data(), values.size());
        else
            std::copy_n(run.values, values.size(), values.begin());
        if (p.reversedRows)
            std::reverse(values.begin(), values.end());
        markZeros(values, run.left, run.right, colorOf, image);
    }
}

} // namespace

void multiplyRow(const double *values, const RealMatrix &matrix, double *result, std::size_t size)
{
    std::fill_n(result, size, 0.0);
    const double *row = matrix.data().begin();
    for (std::size_t i = 0; i < size; ++i, row += matrix.size2()) {
        const double value = values[i];
        for (std::size_t j = 0; j < size; ++j)
            result[j] += value * row[j];
    }
}

void renderSpectrogram(const SpectrogramSource &source, const SpectrogramParameters &parameters, QImage &image,
                       const PixelRange &columns, int offset)
{
    if (!parameters.colormap || parameters.binCount < 2 || image.isNull() || columns.empty)
        return;
    const std::vector<ColumnRun> runs = planColumns(source, parameters, image.width(), columns, offset);
    if (runs.empty())
        return;
    // In portions whose table stays in the cache.
    const std::size_t portion = std::min(runs.size(), runsAtOnce);
    LevelTable levels(parameters, portion);
    withLookup(parameters.colormap, portion, [&](auto lookup) {
        for (std::size_t first = 0; first < runs.size(); first += portion) {
            const Runs some{runs.data() + first, std::min(portion, runs.size() - first)};
            levels.fill(some);
            paintRows(lookup, levels, some, parameters.binCount, image);
        }
    });
    if (parameters.marksZeros)
        markZerosOf(runs, parameters, image);
}

QColor spectrogramBackground(const Colormap::Map &colormap, bool white)
{
    if (!colormap || white)
        return Qt::white;
    const uint color = colormap(-std::numeric_limits<double>::infinity());
    const int gray = (5 * qBlue(color) + 16 * qGreen(color) + 11 * qRed(color)) >> 5;
    const auto halfTone = [half = 0.5 * gray](int channel) { return int(0.5 * half + 0.5 * channel); };
    return {halfTone(qRed(color)), halfTone(qGreen(color)), halfTone(qBlue(color))};
}

} // namespace Tsb
