#include "gui/common/tsb/colorfit.h"

#include "gui/common/tsb/spectrumwalk.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace Tsb {

namespace {

constexpr double lowestDecade = -20;
constexpr double decades = 40;
constexpr double binWidth = 0.01;
constexpr double droppedShare = 0.025;
constexpr int lastBin = ColorHistogram::binCount - 1;

/// What defines a bin.
int definedBin(double v)
{
    const double bin = std::ceil((std::log10(v) - lowestDecade) / decades * 4000);
    return int(std::clamp(bin, 0.0, double(lastBin)));
}

std::uint64_t bitsOf(double v)
{
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

double fromBits(std::uint64_t bits)
{
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

/// Bins by the leading bits of a double. A cell of numbers that agree in exponent and six bits of mantissa spans less
/// than 0.007 decade, so at most one bin edge falls into it; the edge is found by bisection with the definition.
class BinTable {
public:
    static constexpr int mantissaBits = 6;
    static constexpr int cellShift = 52 - mantissaBits;
    // 2^-67 and 2^67 lie outside 1e-20 and 1e20, in the end bins.
    static constexpr std::int64_t firstCell = std::int64_t(1023 - 67) << mantissaBits;
    static constexpr std::int64_t cellCount = std::int64_t(2 * 67) << mantissaBits;

    BinTable() : m_cells(std::size_t(cellCount))
    {
        for (std::int64_t i = 0; i < cellCount; ++i)
            m_cells[std::size_t(i)] = makeCell(std::uint64_t(firstCell + i) << cellShift);
    }

    /// -1 for what isn't counted: zero, negative numbers, infinity and what is no number.
    int binOf(double v) const
    {
        // Below the first cell this wraps, and a sign stands above all cells: one comparison tells the usual values.
        const std::uint64_t cell = (bitsOf(v) >> cellShift) - std::uint64_t(firstCell);
        if (cell < std::uint64_t(cellCount)) {
            const Cell &c = m_cells[std::size_t(cell)];
            return c.bin + (v >= c.edge ? 1 : 0);
        }
        if (!(v > 0 && v <= std::numeric_limits<double>::max()))
            return -1;
        return v < 1 ? 0 : lastBin;
    }

private:
    struct Cell {
        double edge; ///< the first number of the next bin; infinite if it isn't in this cell
        int bin;     ///< of the cell's first number
    };

    static Cell makeCell(std::uint64_t firstBits)
    {
        const int bin = definedBin(fromBits(firstBits));
        std::uint64_t low = firstBits, high = firstBits + (std::uint64_t(1) << cellShift) - 1;
        if (definedBin(fromBits(high)) == bin)
            return {std::numeric_limits<double>::infinity(), bin};
        while (high - low > 1) {
            const std::uint64_t middle = low + (high - low) / 2;
            (definedBin(fromBits(middle)) == bin ? low : high) = middle;
        }
        return {fromBits(high), bin};
    }

    std::vector<Cell> m_cells;
};

const BinTable &binTable()
{
    static const BinTable table;
    return table;
}

} // namespace

int ColorHistogram::binOf(double v)
{
    return binTable().binOf(v);
}

void ColorHistogram::add(const double *values, std::size_t size)
{
    const BinTable &table = binTable();
    const auto count = [&](double v, std::size_t half) {
        const int bin = table.binOf(v);
        if (bin >= 0)
            ++m_counts[half][std::size_t(bin)];
    };
    std::size_t i = 0;
    for (; i + 1 < size; i += 2) {
        count(values[i], 0);
        count(values[i + 1], 1);
    }
    if (i < size)
        count(values[i], 0);
}

std::int64_t ColorHistogram::count(int bin) const
{
    return std::int64_t(m_counts[0][std::size_t(bin)]) + m_counts[1][std::size_t(bin)];
}

std::int64_t ColorHistogram::total() const
{
    std::int64_t sum = 0;
    for (int bin = 0; bin < binCount; ++bin)
        sum += count(bin);
    return sum;
}

std::optional<std::pair<double, double>> ColorHistogram::limits() const
{
    const std::int64_t sum = total();
    if (sum == 0)
        return std::nullopt;
    const double target = droppedShare * double(sum);
    std::int64_t below = 0;
    int lowBin = 0; // the number of bins walked until the count reaches the target
    while (lowBin < lastBin - 1 && double(below) < target)
        below += count(lowBin++);
    std::int64_t above = count(lastBin);
    int highBin = lastBin; // the bin whose count reaches it from above
    while (highBin > 1 && double(above) < target)
        above += count(--highBin);
    const double lower = (lowBin - 1) * binWidth + lowestDecade;
    const double upper = highBin * binWidth + lowestDecade;
    if (!(lower < upper))
        return std::nullopt;
    return std::pair(lower, upper);
}

void addVisibleValues(ColorHistogram &histogram, const SpectrogramSource &source, const TimeScale &scale, int width,
                      int valuesPerSpectrum, const RealMatrix *smoothing)
{
    const auto n = std::size_t(valuesPerSpectrum);
    std::vector<double> smoothed(n);
    const auto [begin, end] = source.entriesAround(scale, 0, width);
    walkSpectra(source.series, begin, end, [&](const SpectrumRecord &entry) {
        const double *values = SpectrogramSource::valuesOf(entry, n);
        if (!values)
            return;
        if (smoothing) {
            multiplyRow(values, *smoothing, smoothed.data(), n);
            values = smoothed.data();
        }
        histogram.add(values, n);
    });
}

} // namespace Tsb
