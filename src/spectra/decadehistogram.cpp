#include "spectra/decadehistogram.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace SpectMath {

namespace {

constexpr double decades = DecadeHistogram::highestDecade - DecadeHistogram::lowestDecade;
constexpr int lastBin = DecadeHistogram::binCount - 1;

/// What defines a bin.
int definedBin(double v)
{
    const double bin = std::ceil((std::log10(v) - DecadeHistogram::lowestDecade) / decades * 4000);
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

int DecadeHistogram::binOf(double v)
{
    return binTable().binOf(v);
}

template<std::uint32_t change>
void DecadeHistogram::count(const double *values, std::size_t size)
{
    const BinTable &table = binTable();
    const auto count = [&](double v, std::size_t half) {
        const int bin = table.binOf(v);
        if (bin >= 0)
            m_counts[half][std::size_t(bin)] += change;
    };
    std::size_t i = 0;
    for (; i + 1 < size; i += 2) {
        count(values[i], 0);
        count(values[i + 1], 1);
    }
    if (i < size)
        count(values[i], 0);
}

void DecadeHistogram::add(const double *values, std::size_t size)
{
    count<1>(values, size);
}

void DecadeHistogram::remove(const double *values, std::size_t size)
{
    count<~std::uint32_t(0)>(values, size); // one less, as counts wrap around
}

void DecadeHistogram::add(const DecadeHistogram &other)
{
    for (std::size_t half = 0; half < m_counts.size(); ++half)
        for (std::size_t bin = 0; bin < m_counts[half].size(); ++bin)
            m_counts[half][bin] += other.m_counts[half][bin];
}

std::int64_t DecadeHistogram::count(int bin) const
{
    // What was counted in one half may have been taken out of the other.
    return std::uint32_t(m_counts[0][std::size_t(bin)] + m_counts[1][std::size_t(bin)]);
}

std::int64_t DecadeHistogram::total() const
{
    std::int64_t sum = 0;
    for (int bin = 0; bin < binCount; ++bin)
        sum += count(bin);
    return sum;
}

} // namespace SpectMath
