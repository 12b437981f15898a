#pragma once

#include "gui/common/tsb/spectrogramrenderer.h"

#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace Tsb {

/// A histogram of log10 of positive numbers, in bins of 0.01 decade from -20 to 20 with one more at each end, from
/// which colour limits are chosen. Values whose logarithm isn't finite are passed over: with a few per cent of exact
/// zeros a limit would fall out of any scale.
class ColorHistogram {
public:
    static constexpr int binCount = 4002;

    void add(const double *values, std::size_t size);
    /// The limits in decades that leave out 2.5 % of the values at each end; none for an empty histogram, or when all
    /// values lie so close together that the lower limit isn't below the upper.
    std::optional<std::pair<double, double>> limits() const;

    std::int64_t total() const;
    std::int64_t count(int bin) const;

    /// The bin of one value: ceil((log10(v) + 20) / 40 * 4000), held within 0 .. 4001. Exact, without a logarithm. -1
    /// for what is passed over.
    static int binOf(double v);

private:
    // Two halves take turns: counting twice in a row into one place would wait for the first to be stored.
    std::array<std::array<std::uint32_t, binCount>, 2> m_counts{};
};

/// Adds every value of every spectrum that is to be drawn around the columns 0 to width, smoothed if there is a matrix.
void addVisibleValues(ColorHistogram &histogram, const SpectrogramSource &source, const TimeScale &scale, int width,
                      int valuesPerSpectrum, const RealMatrix *smoothing);

} // namespace Tsb
