#include "columns/finiterange.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using FiniteRange = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, FiniteRange, ::testing::ValuesIn(seeds(3)));

TEST_P(FiniteRange, CountsFiniteNumbersAlone)
{
    constexpr double infinity = std::numeric_limits<double>::infinity(), greatest = std::numeric_limits<double>::max();
    const std::vector<double> rare{std::nan(""), infinity, -infinity, greatest, -greatest, 0.0, -0.0, 5e-324};
    for (std::size_t size = 0; size < 70; ++size) {
        std::vector<double> values;
        double least = infinity, most = -infinity;
        for (std::size_t i = 0; i < size; ++i) {
            const bool isRare = random() % 3 == 0;
            values.push_back(isRare ? rare[random() % (size < 40 ? 3 : rare.size())] : double(random() % 1000) - 700);
            if (!std::isfinite(values.back()))
                continue;
            least = std::min(least, values.back());
            most = std::max(most, values.back());
        }
        Tsb::FiniteRange range;
        range.include(values.data(), size / 3); // in two goes
        range.include(values.data() + size / 3, size - size / 3);
        EXPECT_EQ(range.isEmpty(), least > most) << size;
        EXPECT_EQ(range.least, least) << size;
        EXPECT_EQ(range.greatest, most) << size;
    }
}

} // namespace
