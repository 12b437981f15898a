#include "axis/valueticks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Tsb::ValueTick;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::string texts(const std::vector<ValueTick> &ticks)
{
    std::string all;
    for (const ValueTick &tick : ticks)
        if (!tick.label.isEmpty())
            all += (all.empty() ? "" : " ") + tick.label.toStdString();
    return all;
}

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

TEST(LinearTicks, Labels)
{
    struct Case {
        double lower, upper;
        int height;
        const char *labels;
    };
    const Case cases[] = {
        {0, 10, 100, "-2 0 2 4 6 8 10 12"},
        {10, 0, 100, "-2 0 2 4 6 8 10 12"},
        {0, 1, 60, "-0.5 0.0 0.5 1.0 1.5"},
        {0, 1, 200, "-0.1 0.0 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1.0 1.1"},
        {-0.3, 0.3, 60, "-0.4 -0.2 0.0 0.2 0.4"},
        {0.0001, 0.0003, 60, "0e-4 1e-4 2e-4 3e-4"},
        {0, 10000, 100, "-0.2e+4 0.0e+4 0.2e+4 0.4e+4 0.6e+4 0.8e+4 1.0e+4 1.2e+4"},
        {0, 5000, 100, "-1000 0 1000 2000 3000 4000 5000 6000"},
        {0, 1e-300, 100, "-0.2e-300 0.0e-300 0.2e-300 0.4e-300 0.6e-300 0.8e-300 1.0e-300"},
        {-1e300, 1e300, 60, "-2e+300 -1e+300 0e+300 1e+300 2e+300"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(texts(Tsb::linearTicks(c.lower, c.upper, c.height, 14)), c.labels) << c.lower << " to " << c.upper;
}

/// Whatever the range: few ticks, rising, evenly spaced, finite, with a text each.
TEST(Ticks, HoldForAnyRange)
{
    const double ends[] = {0,     1,     -1,    0.3,   1e16, 1e16 + 4, 5e-324, 1e-320, 1e-310, 2e-308,
                           1e300, 1e308, -1e16, 1e-16, 1e5,  -40,      308,    3000,   -5000,  1.0000000000000002};
    for (double lower : ends) {
        for (double upper : ends) {
            for (int height : {1, 20, 116, 1000, 100000}) {
                for (bool logarithmic : {false, true}) {
                    const auto ticks = logarithmic ? Tsb::logarithmicTicks(lower, upper, height, 16)
                                                   : Tsb::linearTicks(lower, upper, height, 16);
                    SCOPED_TRACE(testing::Message()
                                 << lower << " to " << upper << " on " << height << (logarithmic ? " log" : " linear"));
                    ASSERT_LE(ticks.size(), 9000u);
                    for (std::size_t i = 0; i < ticks.size(); ++i) {
                        ASSERT_TRUE(std::isfinite(ticks[i].value));
                        ASSERT_FALSE(ticks[i].label.contains(QLatin1String("nan")));
                        ASSERT_FALSE(ticks[i].label.contains(QLatin1String("inf"))) << ticks[i].label.toStdString();
                        ASSERT_FALSE(ticks[i].label.startsWith(QLatin1String("-0.0")) && ticks[i].value == 0);
                    }
                    for (std::size_t i = 1; i < ticks.size(); ++i)
                        ASSERT_GE(ticks[i].value, ticks[i - 1].value);
                }
            }
        }
    }
}

/// The label says what stands at the tick, read back by another route.
TEST(LinearTicks, LabelsAgreeWithValues)
{
    for (double lower : {0.0, -3.7, 1.25e-7, 123456.0, -9.9e20})
        for (double span : {1.0, 0.02, 7e-6, 4.2e4, 3e9, 8.5e22})
            for (const ValueTick &tick : Tsb::linearTicks(lower, lower + span, 150, 14))
                EXPECT_NEAR(tick.label.toDouble(), tick.value, 0.06 * span) << tick.label.toStdString();
}

TEST(LogarithmicTicks, Labels)
{
    struct Case {
        double lower, upper;
        int height;
        const char *labels;
    };
    const Case cases[] = {
        {0, 1, 14, "0.1 1 10 100"}, // no room between decades
        {0, 2, 100, "0.1 0.2 0.5 1 2 5 10 20 50 100 200 500 1000 2000 5000"},
        {0, 10, 70, "0.01 1 100 10000 1e+06 1e+08 1e+10 1e+12"}, // every second decade
        {3, -1, 56, "0.01 0.1 1 10 100 1000 10000"},             // falling axis
        {306, 311, 70, "1e+305 1e+306 1e+307 1e+308 1e+309 1e+310 1e+311 1e+312"},
        {-1000, 1000, 28, "1e-2000 1e-1000 1 1e+1000 1e+2000"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(texts(Tsb::logarithmicTicks(c.lower, c.upper, c.height, 14)), c.labels) << c.lower << " " << c.upper;
}

TEST(LogarithmicTicks, MinorTicksKeepThreePixelsAndLabelsALine)
{
    for (int height = 10; height < 900; height += 7) {
        const auto ticks = Tsb::logarithmicTicks(0.08, 0.9, height, 14); // 1.2 to 7.9: no decade within
        const double perDecade = height / 0.82;
        double lastTick = -inf, lastLabel = -inf;
        int labelsWithin = 0;
        for (const ValueTick &tick : ticks) {
            EXPECT_GE((tick.value - lastTick) * perDecade, 3 - 1e-9) << height;
            lastTick = tick.value;
            if (tick.label.isEmpty() || tick.value < 0.08 || tick.value > 0.9)
                continue; // none, or not drawn
            EXPECT_GE((tick.value - lastLabel) * perDecade, 14 - 1e-9) << height << " " << tick.label.toStdString();
            lastLabel = tick.value;
            ++labelsWithin;
        }
        EXPECT_GE(labelsWithin, height > 60 ? 2 : perDecade >= 14 ? 1 : 0) << height;
    }
}

/// Zoomed in between two marks, or onto one: an axis without numbers says nothing.
TEST(LogarithmicTicks, AShortRangeIsReadableToo)
{
    for (double lower : {-11.98, -0.31, 0.05, 2.74, 3.0, 7.9, 290.4}) {
        for (double span : {1e-7, 1e-4, 0.02, 0.1, 0.25, 0.5}) {
            const auto ticks = Tsb::logarithmicTicks(lower, lower + span, 112, 16);
            double lastLabel = -inf;
            int within = 0;
            for (const ValueTick &tick : ticks) {
                if (tick.label.isEmpty())
                    continue;
                EXPECT_NEAR(std::log10(tick.label.toDouble()), tick.value, 0.01 * span) << tick.label.toStdString();
                if (tick.value < lower || tick.value > lower + span)
                    continue; // not drawn
                EXPECT_GE((tick.value - lastLabel) * 112 / span, 16 - 1e-6) << tick.label.toStdString();
                lastLabel = tick.value;
                ++within;
            }
            EXPECT_GE(within, 2) << lower << " " << span;
            EXPECT_LE(within, 7) << lower << " " << span;
        }
    }
    // 2 to 41: 40 has room, though 100 behind the end would touch it.
    EXPECT_TRUE(contains(texts(Tsb::logarithmicTicks(0.3, 1.615, 53, 17)), " 10 40 "));
    // 550 to 1620; 1400 would touch 1200.
    EXPECT_TRUE(contains(texts(Tsb::logarithmicTicks(2.74, 3.21, 112, 16)), " 500 600 800 1000 1200 1600 2000 "));
}

TEST(Ticks, RangesWithoutExtentHaveNone)
{
    for (auto [lower, upper] : std::vector<std::pair<double, double>>{
             {5, 5}, {0, 0}, {nan, 1}, {0, nan}, {-inf, inf}, {0, inf}, {1e300, 1e300}}) {
        EXPECT_TRUE(Tsb::linearTicks(lower, upper, 100, 14).empty()) << lower << " " << upper;
        EXPECT_TRUE(Tsb::logarithmicTicks(lower, upper, 100, 14).empty()) << lower << " " << upper;
    }
    EXPECT_TRUE(Tsb::linearTicks(-1.7e308, 1.7e308, 100, 14).empty());
    EXPECT_TRUE(Tsb::linearTicks(0, 1, 0, 14).empty() && Tsb::logarithmicTicks(1, 3, 0, 14).empty());
}

} // namespace
