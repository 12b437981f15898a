#include "gui/browser/drawing/colorfit.h"
#include "support/seeds.h"
#include "support/spectrogramreference.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using SpectMath::DecadeHistogram;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

int definedBin(double v)
{
    return std::clamp(int(std::ceil((std::log10(v) - (-20)) / 40 * 4000)), 0, 4001);
}

TEST(DecadeHistogram, BinsAgreeWithTheirDefinitionAtEveryEdge)
{
    for (int bin = -5; bin <= 4006; ++bin) {
        double v = std::pow(10.0, -20 + bin * 0.01);
        for (int i = 0; i < 6; ++i)
            v = std::nextafter(v, 0.0);
        for (int i = 0; i < 12; ++i, v = std::nextafter(v, inf))
            ASSERT_EQ(DecadeHistogram::binOf(v), definedBin(v)) << "at 1e" << bin * 0.01 - 20;
    }
    // The first numbers of each cell of the table that the bins come from, and the ends of all doubles.
    for (int exponent = -80; exponent < 80; ++exponent)
        for (int part = 0; part < 64; ++part)
            for (double v :
                 {std::ldexp(1 + part / 64.0, exponent), std::nextafter(std::ldexp(1 + part / 64.0, exponent), 0.0)})
                ASSERT_EQ(DecadeHistogram::binOf(v), definedBin(v)) << v;
    for (double v : {5e-324, 1e-310, 2.2250738585072014e-308, 1e300, 1.7976931348623157e308})
        EXPECT_EQ(DecadeHistogram::binOf(v), definedBin(v)) << v;
}

TEST(DecadeHistogram, PassesOverWhatHasNoLogarithm)
{
    DecadeHistogram histogram;
    const double odd[] = {0, -0.0, -3, nan, -nan, inf, -inf, -5e-324, -1e300};
    histogram.add(odd, 9);
    histogram.add(odd + 1, 8);
    EXPECT_EQ(histogram.total(), 0);
    EXPECT_FALSE(Tsb::colorLimits(histogram));
    const double some[] = {1e-30, 5e-324, 1, 1e30, 1.7976931348623157e308};
    histogram.add(some, 5);
    EXPECT_EQ(histogram.total(), 5);
    EXPECT_EQ(histogram.count(0), 2);
    EXPECT_EQ(histogram.count(2000), 1);
    EXPECT_EQ(histogram.count(4001), 2);
}

using RandomHistogram = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, RandomHistogram, ::testing::ValuesIn(seeds(3)));

TEST_P(RandomHistogram, LimitsLeaveOutAFortiethAtEachEnd)
{
    for (int round = 0; round < 20; ++round) {
        std::vector<double> values;
        std::normal_distribution<double> spread(round - 10, 0.1 + round * 0.1);
        for (int i = 0; i < 4000; ++i)
            values.push_back(std::pow(10, spread(random)));
        DecadeHistogram histogram;
        histogram.add(values.data(), values.size());
        std::sort(values.begin(), values.end());
        const auto limits = Tsb::colorLimits(histogram);
        ASSERT_TRUE(limits);
        // The upper edges of the bins that hold the hundredth value from either end.
        for (const auto &[limit, value] :
             {std::pair(limits->first, values[99]), std::pair(limits->second, values[3900])}) {
            EXPECT_GE(limit, std::log10(value) - 1e-12) << round;
            EXPECT_LE(limit, std::log10(value) + 0.01 + 1e-12) << round;
        }
    }
}

TEST(DecadeHistogram, OneFilledBinSetsNothing)
{
    DecadeHistogram histogram;
    const std::vector<double> same(100, 42.0);
    histogram.add(same.data(), same.size());
    EXPECT_FALSE(Tsb::colorLimits(histogram));
    const double far = 1e30;
    histogram.add(&far, 1); // one in a hundred is dropped
    EXPECT_FALSE(Tsb::colorLimits(histogram));
    const std::vector<double> beyond(100, 1e40);
    histogram.add(beyond.data(), beyond.size());
    ASSERT_TRUE(Tsb::colorLimits(histogram));
    EXPECT_NEAR(Tsb::colorLimits(histogram)->second, 20.01, 1e-9);
}

/// Beside a loop over all entries with the definition: series shorter and longer than what is fetched ahead, spectra of
/// several lengths among them, empty ones, and entries without one.
TEST_P(RandomHistogram, CountsEveryValueOfEveryWalk)
{
    std::uniform_real_distribution<double> decade(-1, 1);
    for (const int count : {0, 1, 7, 8, 9, 15, 16, 17, 30, 300}) {
        TestSeries series;
        std::vector<std::int64_t> expected(DecadeHistogram::binCount, 0);
        for (int i = 0; i < count; ++i) {
            const std::size_t sizes[] = {9, 9, 9, 0, 8, 17};
            std::vector<double> values(sizes[random() % 6]);
            for (double &value : values)
                value = random() % 8 == 0 ? -1 : std::pow(10.0, 3 * decade(random));
            const bool absent = random() % 5 == 0;
            const int status = random() % 5 == 0 ? 3 : 0;
            series.add(i * ticksPerSecond, (i + 1) * ticksPerSecond, absent ? nullptr : &values, status);
            if (absent || status != 0 || values.size() != 9)
                continue;
            for (const double value : values)
                if (value > 0)
                    ++expected[std::size_t(definedBin(value))];
        }
        DecadeHistogram histogram;
        const TimeScale scale(recordTimeFromTicks(0), ticksPerSecond, 0);
        Tsb::addVisibleValues(histogram, series.source(), scale, count + 2, 9, nullptr);
        for (int bin = 0; bin < DecadeHistogram::binCount; ++bin)
            ASSERT_EQ(histogram.count(bin), expected[std::size_t(bin)]) << count << " entries, bin " << bin;

        for (const int from :
             {0, 3, count / 4, count / 2, count - 5}) { // with what is known of all entries, and without
            TimeScale part = scale;
            part.originPixel = -from;
            const int width = std::max(count - from - count / 5, 1);
            DecadeHistogram walked, takenOut;
            Tsb::addVisibleValues(walked, series.source(), part, width, 9, nullptr);
            Tsb::addVisibleValues(takenOut, series.source(), part, width, 9, nullptr, &histogram);
            for (int bin = 0; bin < DecadeHistogram::binCount; ++bin)
                ASSERT_EQ(takenOut.count(bin), walked.count(bin)) << count << " from " << from << ", bin " << bin;
        }
    }
}

TEST(DecadeHistogram, TakesWhatIsInView)
{
    TestSeries series;
    const std::int64_t start = 1'600'000'000 * ticksPerSecond;
    for (int i = 0; i < 100; ++i) {
        const std::vector<double> values(3, std::pow(10, i * 0.02));
        series.add(start + i * ticksPerSecond, start + (i + 1) * ticksPerSecond, &values, i == 30 ? 2 : 0);
    }
    const TimeScale scale(recordTimeFromTicks(start), ticksPerSecond, -20); // columns 0 to 40 show 20 to 60
    DecadeHistogram histogram;
    Tsb::addVisibleValues(histogram, series.source(), scale, 40, 3, nullptr);
    // From the one before 18 to the first at or after 62, without the failed one.
    EXPECT_EQ(histogram.total(), (62 - 17 + 1 - 1) * 3);

    DecadeHistogram smoothed;
    const RealMatrix doubling = 2 * RealMatrix(boost::numeric::ublas::identity_matrix<double>(3));
    Tsb::addVisibleValues(smoothed, series.source(), scale, 40, 3, &doubling);
    EXPECT_NEAR(Tsb::colorLimits(smoothed)->first, Tsb::colorLimits(histogram)->first + std::log10(2), 0.011);

    DecadeHistogram other;
    Tsb::addVisibleValues(other, series.source(), scale, 40, 4, nullptr);
    EXPECT_EQ(other.total(), 0) << "spectra of another length";
}

} // namespace
