#include "util/decadelogarithm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

double logOf(double value)
{
    double result = 0;
    log10OfEach(&value, &result, 1);
    return result;
}

} // namespace

TEST(DecadeLogarithm, AgreesWithTheLibrary)
{
    std::mt19937_64 random(1);
    std::vector<double> values(100'000), results(values.size());
    for (double &value : values) {
        const std::uint64_t bits = random();
        std::memcpy(&value, &bits, sizeof value);
        if (random() % 2)
            value = std::exp(std::uniform_real_distribution<>(-3, 3)(random)); // near 1, where terms cancel
    }
    const double infinity = std::numeric_limits<double>::infinity(), tiny = 5e-324;
    for (const double special : {0.0, -0.0, -1.0, infinity, -infinity, tiny, 2e-310, 1.0})
        values.push_back(special);
    results.resize(values.size());
    log10OfEach(values.data(), results.data(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double expected = std::log10(values[i]);
        if (std::isnan(expected))
            EXPECT_TRUE(std::isnan(results[i])) << values[i];
        else if (std::isinf(expected) || expected == 0)
            EXPECT_EQ(results[i], expected) << values[i];
        else
            EXPECT_LE(std::abs(results[i] / expected - 1), 4.5e-16) << values[i];
    }
    log10OfEach(values.data(), values.data(), values.size());
    EXPECT_EQ(std::memcmp(values.data(), results.data(), values.size() * sizeof(double)), 0) << "one array for both";
}

TEST(DecadeLogarithm, IsExactForPowersOfTen)
{
    for (int power = -22; power <= 22; ++power)
        EXPECT_EQ(logOf(std::stod("1e" + std::to_string(power))), power);
}
