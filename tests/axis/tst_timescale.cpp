#include "axis/pixelrange.h"
#include "axis/timescale.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr std::int64_t day = ticksPerDay;
const RecordTime noon = recordTimeFromTicks(18'000 * day + day / 2);

TimeScale secondScale(std::int64_t pixel = 0)
{
    return {noon, ticksPerSecond, pixel};
}

TEST(TimeScale, MapsTicksAndPixels)
{
    const TimeScale scale = secondScale(100);
    EXPECT_EQ(scale.tickAt(160), noon + Ticks(60 * ticksPerSecond));
    EXPECT_EQ(scale.pixelAt(noon + Ticks(60 * ticksPerSecond + 9'999'999)), 160);
    EXPECT_EQ(scale.pixelAt(noon - Ticks(1)), 100) << "integer division truncates towards the origin";
    EXPECT_DOUBLE_EQ(scale.positionOf(noon - Ticks(5'000'000)), 99.5);
}

TEST(TimeScale, RebasedKeepsTheMapping)
{
    const TimeScale scale(noon, 12345, -7), other = scale.rebased(300);
    EXPECT_EQ(other.originPixel, 300);
    for (const int x : {-1000, 0, 300, 5000})
        EXPECT_EQ(scale.tickAt(x), other.tickAt(x));
}

TEST(TimeScale, FarTimesStayWithinBounds)
{
    const TimeScale fine(noon, 1, 0);
    EXPECT_EQ(fine.pixelAt(latestRecordTime), TimeScale::farPixel);
    EXPECT_EQ(fine.pixelAt(earliestRecordTime), -TimeScale::farPixel);
    EXPECT_EQ(fine.pixelAt(noon + Ticks(day)), TimeScale::farPixel) << "a day at one tick a pixel";
    EXPECT_TRUE(std::isfinite(fine.positionOf(earliestRecordTime)));
    const TimeScale coarse(noon, TimeScale::greatestTicksPerPixel, 0);
    EXPECT_EQ(coarse.tickAt(std::int64_t(1) << 60), latestRecordTime);
    EXPECT_EQ(saturatedPixel(std::nan("")), 0);
    EXPECT_EQ(saturatedPixel(-1e300), -TimeScale::farPixel);
}

struct ShiftCase {
    TimeScale from, to;
    bool exact;
    int shift;
};

TEST(TimeScale, PixelShift)
{
    const TimeScale scale = secondScale();
    const ShiftCase cases[] = {
        {scale, scale, true, 0},
        {scale, secondScale(5), true, 5},
        {scale, {noon + Ticks(3 * ticksPerSecond), ticksPerSecond, 0}, true, -3},
        {scale, {noon + Ticks(3 * ticksPerSecond), ticksPerSecond, 3}, true, 0},
        {scale, {noon + Ticks(1), ticksPerSecond, 0}, false, 0},
        {scale, {noon, ticksPerSecond + 1, 0}, false, 0},
        {scale, {RecordTime(), ticksPerSecond, 0}, false, 0},
        {{noon, 1, 0}, {recordTimeFromTicks(1), 1, 0}, true, int(TimeScale::farPixel)},
        {{latestRecordTime, 1, 0}, {earliestRecordTime, 1, 0}, false, 0},
    };
    for (const ShiftCase &c : cases) {
        int shift = -99;
        EXPECT_EQ(c.from.pixelShiftFrom(c.to, &shift), c.exact);
        EXPECT_EQ(shift, c.exact ? c.shift : -99);
    }
}

TEST(TimeScale, OverflowIsSeen)
{
    EXPECT_TRUE(secondScale().isRepresentable(4000));
    EXPECT_TRUE(TimeScale(noon, TimeScale::greatestTicksPerPixel, 0).isRepresentable(1600));
    EXPECT_FALSE(TimeScale(latestRecordTime - Ticks(100), ticksPerSecond, 0).isRepresentable(100));
    EXPECT_FALSE(TimeScale(noon, TimeScale::greatestTicksPerPixel, -10'000'000'000).isRepresentable(100));
    EXPECT_FALSE(TimeScale(noon, 1, std::numeric_limits<std::int64_t>::min()).isRepresentable(100));
}

TEST(PixelRange, Operations)
{
    PixelRange range;
    range.unite(7, 3);
    EXPECT_EQ(range, PixelRange(3, 7));
    range.unite(PixelRange());
    range.unite(10, 12);
    EXPECT_EQ(range, PixelRange(3, 12));
    EXPECT_EQ(range.clipped(5, 100), PixelRange(5, 12));
    EXPECT_TRUE(range.clipped(12, 20).empty);
    EXPECT_TRUE(PixelRange().clipped(-5, 5).empty);
    EXPECT_TRUE(PixelRange().shifted(4).empty);
    EXPECT_EQ(range.shifted(-3), PixelRange(0, 9));
    EXPECT_TRUE(range.intersects(PixelRange(11, 40)));
    EXPECT_FALSE(range.intersects(PixelRange(12, 40)));
    EXPECT_FALSE(range.intersects(PixelRange()));
}

} // namespace
