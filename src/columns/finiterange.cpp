#include "columns/finiterange.h"

#include "util/functionclones.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

// Many ranges side by side, as each comparison waits for the one before it.
MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void FiniteRange::include(const double *values, std::size_t count)
{
    constexpr std::size_t lanes = 16;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double low[lanes], high[lanes];
    std::fill_n(low, lanes, infinity);
    std::fill_n(high, lanes, -infinity);
    double padded[lanes];
    for (std::size_t i = 0; i < count; i += lanes) {
        const double *some = values + i;
        if (count - i < lanes) {
            std::fill_n(padded, lanes, infinity);
            std::copy_n(some, count - i, padded);
            some = padded;
        }
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const double value = some[lane];
            const bool finite = std::abs(value) < infinity;
            const double ifLow = finite ? value : infinity, ifHigh = finite ? value : -infinity;
            low[lane] = ifLow < low[lane] ? ifLow : low[lane];
            high[lane] = ifHigh > high[lane] ? ifHigh : high[lane];
        }
    }
    least = std::min(least, *std::min_element(low, low + lanes));
    greatest = std::max(greatest, *std::max_element(high, high + lanes));
}

} // namespace Tsb
