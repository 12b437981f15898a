#include "gui/browser/drawing/colormap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Colormap::Map named(const std::string &name)
{
    return Colormap::make(Colormap::indexOfName(name));
}

TEST(Colormap, KnownColors)
{
    struct Case {
        const char *name;
        double v;
        uint color;
    };
    // The tables' first, 128th and last rows; hot and jet by hand from their corners.
    const Case cases[] = {
        {"jet", 0, 0xFF00007F},         {"jet", 1, 0xFF7F0000},       {"jet", 0.5, 0xFF7AFF7B},
        {"viridis", 0, 0xFF440154},     {"viridis", 1, 0xFFFDE724},   {"viridis", 127.5 / 255, 0xFF208F8C},
        {"plasma", 0, 0xFF0C0786},      {"plasma", 1, 0xFFEFF821},    {"inferno", 0, 0xFF000003},
        {"inferno", 1, 0xFFFCFEA4},     {"hot", 0, 0xFF0A0000},       {"hot", 1, 0xFFFFFFFF},
        {"grayscale", 0.5, 0xFF7F7F7F}, {"grayscale", 1, 0xFFFFFFFF}, {"grayscale", 0.999, 0xFFFEFEFE},
    };
    for (const Case &c : cases)
        EXPECT_EQ(named(c.name)(c.v), c.color) << c.name << " at " << c.v << std::hex << " is " << named(c.name)(c.v);
}

TEST(Colormap, EveryMapHoldsItsEndsForAnyNumber)
{
    ASSERT_EQ(Colormap::names().size(), 6u);
    for (const std::string &name : Colormap::names()) {
        const Colormap::Map map = named(name);
        for (double low : {-inf, -1e300, -0.1, -0.0, nan, -nan})
            EXPECT_EQ(map(low), map(0.0)) << name << " at " << low;
        for (double high : {inf, 1e300, 1.1, 3e9})
            EXPECT_EQ(map(high), map(1.0)) << name << " at " << high;
        EXPECT_NE(map(0.0), map(1.0)) << name;
    }
    EXPECT_FALSE(Colormap::make(-1));
    EXPECT_FALSE(Colormap::make(6));
    EXPECT_EQ(Colormap::indexOfName("Jet"), -1);
}

TEST(Colormap, SegmentsJumpAtACorner)
{
    // Red jumps from 0.2 to 0.8 at 0.5; green is a table of one corner.
    const Colormap::LinearSegmentedColormap map({{0, 0, 0}, {0.5, 0.2, 0.8}, {1, 1, 1}}, {{0.5, 0.1, 0.4}},
                                                {{0, 1, 1}, {1, 1, 1}});
    EXPECT_EQ(map(0.25), 0xFF1966FFu); // 0.1 * 255 = 25.5, 0.4 * 255 = 102
    EXPECT_EQ(map(0.5), 0xFFCC66FFu);
    EXPECT_EQ(map(0.75), 0xFFE566FFu);
    EXPECT_EQ(map(nan), 0xFF0000FFu);
}

TEST(Colormap, CachedIndexIsTruncated)
{
    // Ten entries, told apart by their place.
    const Colormap::CachedColormap map([](double v) { return uint(std::lround(v * 9)); }, 10);
    for (double v : {0.0, 0.1, 0.1112, 0.5, 0.88888, 0.8889, 0.99999, 1.0})
        EXPECT_EQ(map(v), uint(std::trunc(9 * v))) << v;
}

TEST(Colormap, ThresholdMakesTwoZones)
{
    const Colormap::ThresholdColormap map([](double) { return 0xFF64C800u; }, 0.5, 0.3);
    EXPECT_EQ(map(0.5), 0xFF1E3C00u);  // darkened: 100, 200, 0 times 0.3
    EXPECT_EQ(map(0.51), 0xFFD0EEB2u); // washed: 178.5 + 30, + 60, + 0
    EXPECT_EQ(map(nan), 0xFF1E3C00u);
}

} // namespace
