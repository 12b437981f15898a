#include "gui/common/tsb/spectrogramrenderer.h"
#include "gui/common/tsb/spectrogramcolumns.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

/// Colour of a normalised value by one multiplication and a table read.
struct TableLookup {
    const uint *entries;
    double top; ///< the last index

    uint operator()(double v) const
    {
        const double low = v > 0 ? v : 0.0; // also for what is no number
        const double held = low < 1 ? low : 1.0;
        return entries[int(top * held)];
    }
};

/// The same with a second table for values above a threshold.
struct ZoneLookup {
    TableLookup below, above;
    double threshold;
    uint operator()(double v) const { return v > threshold ? above(v) : below(v); }
};

struct MapLookup {
    const Colormap::Map &map;
    uint operator()(double v) const { return map(std::isnan(v) ? 0.0 : v); }
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
void withLookup(const Colormap::Map &map, Function function)
{
    const auto lookupIn = [](const std::vector<uint> &table) {
        return TableLookup{table.data(), double(table.size() - 1)};
    };
    const auto *zones = map.target<Colormap::ThresholdColormap>();
    const std::vector<uint> table = tableOf(zones ? zones->inner() : map);
    if (table.empty())
        return function(MapLookup{map});
    if (!zones)
        return function(lookupIn(table));
    const double threshold = zones->threshold();
    std::vector<uint> below = table, above = table;
    for (uint &color : below)
        color = zones->zoneColor(color, threshold);
    for (uint &color : above)
        color = zones->zoneColor(color, std::numeric_limits<double>::infinity());
    function(ZoneLookup{lookupIn(below), lookupIn(above), threshold});
}

/// The normalised logarithms of all runs, bin by bin from the bottom of the strip: row k holds bin k of every run.
class LevelTable {
public:
    LevelTable(const SpectrogramSource &source, const SpectrogramParameters &p, const std::vector<ColumnRun> &runs)
        : m_runs(runs.size()), m_levels(runs.size() * std::size_t(p.binCount))
    {
        const auto n = std::size_t(p.binCount);
        std::vector<double> smoothed(n);
        for (std::size_t r = 0; r < m_runs; ++r) {
            const double *values = source.values(runs[r].entry, n);
            if (p.smoothing) {
                multiplyRow(values, *p.smoothing, smoothed.data(), n);
                values = smoothed.data();
            }
            for (std::size_t k = 0; k < n; ++k)
                m_levels[k * m_runs + r] = std::log10(values[p.reversedRows ? n - 1 - k : k]);
        }
        const double span = p.colorUpper - p.colorLower;
        for (double &level : m_levels)
            level = (level - p.colorLower) / span;
    }

    const double *bin(std::size_t k) const { return m_levels.data() + k * m_runs; }

private:
    std::size_t m_runs;
    std::vector<double> m_levels;
};

/// Copies one color per run to the columns of the runs.
class RunSpreader {
public:
    explicit RunSpreader(const std::vector<ColumnRun> &runs)
    {
        for (std::size_t r = 0; r < runs.size(); ++r) {
            const ColumnRun &run = runs[r];
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

template<typename Lookup>
void paintRows(const Lookup &lookup, const LevelTable &levels, const std::vector<ColumnRun> &runs, int binCount,
               QImage &image)
{
    const RunSpreader spreader(runs);
    const std::size_t count = runs.size();
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
            for (std::size_t r = 0; r < count; ++r)
                colors[r] = lookup(t * slopes[r] + bases[r]);
            spreader.spread(colors.data(), reinterpret_cast<uint *>(bits + std::ptrdiff_t(y) * image.bytesPerLine()));
        }
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
    const LevelTable levels(source, parameters, runs);
    withLookup(parameters.colormap,
               [&](const auto &lookup) { paintRows(lookup, levels, runs, parameters.binCount, image); });
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
