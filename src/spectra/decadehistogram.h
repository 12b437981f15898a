#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace SpectMath {

/// A histogram of log10 of positive numbers, in bins of 0.01 decade from -20 to 20 with one more at each end. Values
/// whose logarithm isn't finite are passed over. Holds up to 2^32 - 1 values a bin.
class DecadeHistogram {
public:
    static constexpr double lowestDecade = -20;
    static constexpr double highestDecade = 20;
    static constexpr double binWidth = 0.01;
    static constexpr int binCount = 4002;

    void add(const double *values, std::size_t size);
    void add(const DecadeHistogram &other);
    /// Takes out values that were added.
    void remove(const double *values, std::size_t size);

    std::int64_t total() const;
    std::int64_t count(int bin) const;

    /// The bin of one value: ceil((log10(v) + 20) / 40 * 4000), held within 0 .. 4001. Exact, without a logarithm. -1
    /// for values that are passed over.
    static int binOf(double v);

private:
    template<std::uint32_t change>
    void count(const double *values, std::size_t size);

    // Two halves take turns: counting twice in a row into one place would wait for the first to be stored.
    std::array<std::array<std::uint32_t, binCount>, 2> m_counts{};
};

} // namespace SpectMath
