#include "support/seeds.h"
#include "support/spectrogramreference.h"

#include "spectra/spectrum.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t second = ticksPerSecond;
constexpr std::int64_t start = 1'600'000'000 * ticksPerSecond;
constexpr QRgb untouched = 0xFF123456;

QImage blank(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(untouched);
    return image;
}

/// The columns of the image that something was drawn to, as text: "x" drawn, "." not.
std::string drawnColumns(const QImage &image)
{
    std::string columns;
    for (int x = 0; x < image.width(); ++x)
        columns += image.pixel(x, 0) == untouched ? '.' : 'x';
    return columns;
}

Tsb::SpectrogramParameters plainParameters(int binCount)
{
    Tsb::SpectrogramParameters p;
    p.scale = TimeScale(recordTimeFromTicks(start), second, 0);
    p.binCount = binCount;
    p.colormap = Colormap::make(0);
    return p;
}

/// A spectrum of two equal bins with value 10^level.
std::vector<double> flat(double level)
{
    return {std::pow(10, level), std::pow(10, level)};
}

class SpectrogramColumns : public ::testing::Test {
protected:
    /// A record from begin to end, in columns.
    void add(double begin, double end, double level = 2)
    {
        const auto values = flat(level);
        series.add(start + std::int64_t(begin * second), start + std::int64_t(end * second), &values);
    }
    std::string drawn(bool fillGaps, int width)
    {
        auto p = plainParameters(2);
        p.fillGaps = fillGaps;
        QImage image = blank(width, 4);
        renderSpectrogram(series.source(), p, image, {0, width});
        return drawnColumns(image);
    }
    TestSeries series;
};

TEST_F(SpectrogramColumns, OuterRecordsGrowByOne)
{
    add(10, 12);
    add(20, 22);
    EXPECT_EQ(drawn(false, 32), "..........xx........xx..........");
    EXPECT_EQ(drawn(true, 32), "..........xxx......xxx..........");
}

TEST_F(SpectrogramColumns, InnerRecordsOfLikeGaps)
{
    struct Case {
        int gap, grows;
    };
    for (const Case &c : {Case{2, 1}, {8, 4}, {14, 3}, {18, 1}, {20, 0}, {40, 0}}) {
        series = TestSeries();
        for (int i = 0; i < 6; ++i)
            add(i * (c.gap + 4), i * (c.gap + 4) + 4);
        const std::string columns = drawn(true, 6 * (c.gap + 4));
        const int begin = 2 * (c.gap + 4);
        std::string expected(std::size_t(c.gap + 4), '.'); // from the third record's begin to the fourth's
        for (int i = 0; i < 4 + c.grows; ++i)
            expected[std::size_t(i)] = 'x';
        for (int i = 0; i < c.grows; ++i)
            expected[expected.size() - 1 - std::size_t(i)] = 'x';
        EXPECT_EQ(columns.substr(std::size_t(begin), expected.size()), expected) << "gap " << c.gap;
    }
}

TEST_F(SpectrogramColumns, ARecordIsOneColumnUnlessCovered)
{
    add(3.1, 3.2, 1.5);
    add(3.3, 3.4, 2.5); // the column is taken
    add(7.6, 7.6, 2.0); // no length at all
    EXPECT_EQ(drawn(false, 12), "...x....x...");
}

TEST_F(SpectrogramColumns, ALaterRecordPaintsOverOneThatItOverlaps)
{
    add(2, 8, 1.2);
    add(5, 10, 2.8);
    add(6, 9, 2.0); // ends within what is painted
    auto p = plainParameters(2);
    QImage image = blank(12, 4);
    renderSpectrogram(series.source(), p, image, {0, 12});
    EXPECT_EQ(image.pixel(4, 1), p.colormap(0.1));
    EXPECT_EQ(image.pixel(5, 1), p.colormap(0.9));
    EXPECT_EQ(image.pixel(9, 1), p.colormap(0.9));
    EXPECT_EQ(drawnColumns(image), "..xxxxxxxx..");
}

TEST(SpectrogramRows, BinsStandEvenlyFromTheBottom)
{
    TestSeries series;
    const std::vector<double> values{10, 1000, 10}; // up from the lower to the upper limit and back
    series.add(start, start + 3 * second, &values);
    auto p = plainParameters(3);
    p.colormap = [](double v) { return 0xFF000000u | uint(std::lround(v * 1000)); };
    QImage image = blank(2, 20);
    renderSpectrogram(series.source(), p, image, {0, 2});
    for (int y = 0; y < 20; ++y)
        EXPECT_EQ(image.pixel(1, y) & 0xFFFFFF, uint(y < 10 ? y * 100 : 1000 - (y - 10) * 100)) << y;
}

TEST(SpectrogramRows, OddValuesHaveTheirColors)
{
    struct Case {
        double lower, upper, limitLow, limitHigh;
        double expectedBottom; ///< what the map is asked for on the lowest row
        double expectedTop;
    };
    const Case cases[] = {
        {nan, 100, 1, 3, 0, 0},     {100, -5, 1, 3, 0, 0},  {0, 1000, 1, 3, 0, 0},
        {0, 0, 1, 3, -inf, -inf},   {inf, inf, 1, 3, 1, 1}, {1000, 1000, 2, 2, 1, 1}, // equal limits
        {10, 10, 2, 2, -inf, -inf}, {100, 100, 2, 2, 0, 0},
    };
    for (const Case &c : cases) {
        TestSeries series;
        const std::vector<double> values{c.lower, c.upper};
        series.add(start, start + 3 * second, &values);
        auto p = plainParameters(2);
        p.colorLower = c.limitLow;
        p.colorUpper = c.limitHigh;
        QImage image = blank(1, 8);
        renderSpectrogram(series.source(), p, image, {0, 1});
        EXPECT_EQ(image.pixel(0, 7), p.colormap(c.expectedBottom)) << c.lower << " " << c.upper;
        EXPECT_EQ(image.pixel(0, 0), p.colormap(c.expectedTop)) << c.lower << " " << c.upper;
    }
}

TEST(SpectrogramRows, AMarkBelowTheLimitsDarkensNoRowBesideAZero)
{
    const std::vector<double> values{100, 0, 1000, nan, 10};
    TestSeries series;
    series.add(start, start + 3 * second, &values);
    for (const double mark : {-0.2, 0.0, 0.2}) {
        auto p = plainParameters(5);
        p.colormap = Colormap::ThresholdColormap(p.colormap, mark, 0.3);
        QImage painted = blank(1, 16), expected = blank(1, 16);
        renderSpectrogram(series.source(), p, painted, {0, 1});
        drawPlainly(series, p, expected, 0, 1, 0);
        EXPECT_EQ(painted, expected) << mark;
    }
}

/// Random stores, drawn plainly and quickly.
class RandomStores : public Seeded<> {
protected:
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); }
    bool chance(double p) { return uniform(0, 1) < p; }

    std::vector<double> randomValues(int n)
    {
        std::vector<double> values;
        for (int i = 0; i < n; ++i)
            values.push_back(chance(0.02) ? nan : chance(0.03) ? 0 : chance(0.01) ? inf : std::pow(10, uniform(-1, 5)));
        return values;
    }

    /// Records of about the given length and gap in columns; negative gaps overlap.
    TestSeries randomSeries(int count, double length, double gap, int n, bool absurd)
    {
        TestSeries series;
        double at = uniform(-30, 10);
        std::int64_t lastBegin = std::numeric_limits<std::int64_t>::min();
        for (int i = 0; i < count; ++i) {
            const double size = length * uniform(0, 2);
            std::int64_t begin = std::max(lastBegin, start + std::int64_t(at * second));
            std::int64_t end = start + std::int64_t((at + size) * second);
            if (absurd && chance(0.05))
                end = chance(0.3)   ? 0
                      : chance(0.5) ? begin + std::int64_t(uniform(-500, 500) * second)
                                    : std::numeric_limits<std::int64_t>::max();
            lastBegin = begin;
            const auto values = randomValues(chance(0.03) ? n + 1 : n);
            series.add(begin, end, chance(0.03) ? nullptr : &values, chance(0.05) ? pick(1, 4) : 0);
            at += size + gap * uniform(0, 2);
            if (chance(0.05))
                at += uniform(0, 40);
        }
        return series;
    }
};

TEST_P(RandomStores, PixelsAreThoseOfThePlainDrawing)
{
    struct Shape {
        int count;
        double length, gap;
        bool absurd;
    };
    // From hundreds of records a column to one record over many columns.
    const Shape shapes[] = {{20000, 0.005, 0.001, false},
                            {3000, 0.05, 0.02, true},
                            {400, 0.4, 0.4, true},
                            {400, 0.3, -0.1, true},
                            {60, 3, 1, false},
                            {60, 3, 8, true},
                            {40, 6, -2, true},
                            {3, 200, 15, false},
                            {0, 1, 1, false}};
    const RealMatrix smoothing = SpectMath::smoothingWindowMatrix(7, 1.5);
    for (const Shape &shape : shapes) {
        const TestSeries series = randomSeries(shape.count, shape.length, shape.gap, 7, shape.absurd);
        for (int round = 0; round < 6; ++round) {
            auto p = plainParameters(7);
            p.scale.originPixel = pick(-20, 20);
            p.scale.originTick += Ticks(std::int64_t(uniform(-3, 3) * second));
            p.scale.ticksPerPixel = std::int64_t(second * uniform(0.3, 3));
            p.fillGaps = round % 2 == 0;
            p.reversedRows = chance(0.5);
            p.smoothing = chance(0.3) ? &smoothing : nullptr;
            p.colorLower = uniform(-1, 1);
            p.colorUpper = chance(0.1) ? p.colorLower : p.colorLower + uniform(0.1, 4);
            const int map = pick(0, 7);
            p.colormap = Colormap::make(map % 6);
            if (map > 3)
                p.colormap = Colormap::ThresholdColormap(p.colormap, chance(0.5) ? 0.4 : -0.2, 0.3);
            if (map == 7)
                p.colormap = [inner = p.colormap](double v) { return inner(v) ^ 0xFF; };
            const int width = pick(40, 120), height = pick(1, 50);
            const int first = chance(0.5) ? 0 : pick(0, width - 1), last = chance(0.5) ? width : pick(first, width);
            const bool shifted = chance(0.3);
            QImage expected = blank(shifted ? std::max(1, last - first) : width, height);
            QImage painted = expected.copy();
            drawPlainly(series, p, expected, first, last, shifted ? -first : 0);
            renderSpectrogram(series.source(), p, painted, {first, last}, shifted ? -first : 0);
            ASSERT_EQ(painted, expected) << shape.count << " records of " << shape.length << ", round " << round;
        }
    }
}

TEST_P(RandomStores, DirtyColumnsJoinTheRest)
{
    for (double length : {0.02, 0.7, 5.0}) {
        // Without overlaps; a full redraw and one in pieces agree.
        const TestSeries series = randomSeries(300, length, length / 2, 5, false);
        for (bool fillGaps : {false, true}) {
            auto p = plainParameters(5);
            p.fillGaps = fillGaps;
            QImage whole = blank(100, 20), pieces = blank(100, 20);
            renderSpectrogram(series.source(), p, whole, {0, 100});
            for (int first = 0; first < 100;) {
                const int last = std::min(100, first + pick(1, 30));
                renderSpectrogram(series.source(), p, pieces, {first, last});
                first = last;
            }
            ASSERT_EQ(whole, pieces) << length << fillGaps;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomStores, ::testing::ValuesIn(seeds(3)));

/// The image that marks leave: bins of 0 and below in stripes to half way to their neighbours, neighbours with a value
/// in their own colour up to there, and all else as without marks.
QImage markedPlainly(QImage image, std::vector<double> values, const Tsb::SpectrogramParameters &p, int left, int right)
{
    if (p.reversedRows)
        std::reverse(values.begin(), values.end());
    const int H = image.height(), n = int(values.size()) - 1;
    for (int k = 0; k < n; ++k) {
        const int bottom = H - k * H / n, top = H - (k + 1) * H / n;
        const double pair[] = {values[std::size_t(k) + 1], values[std::size_t(k)]};
        if (!(pair[0] <= 0 || pair[1] <= 0))
            continue;
        for (int y = top; y < bottom; ++y) {
            const double value = pair[y >= top + (bottom - top) / 2 ? 1 : 0];
            const QRgb gray = y % 4 < 2 ? 0xFF787878 : 0xFFE8E8E8;
            const double level = (std::log10(value) - p.colorLower) / (p.colorUpper - p.colorLower);
            for (int x = left; x < right && !std::isnan(value); ++x)
                image.setPixel(x, y, value > 0 ? p.colormap(level) : gray);
        }
    }
    return image;
}

TEST(SpectrogramZeros, AreStripedUnlikeMissingValuesAndOnlyWhereTheyAreMarked)
{
    const std::vector<std::vector<double>> spectra{{10, 0, 100, 1000},   {0, 0, 0, 0},        {-5, 20, -1, nan},
                                                   {nan, 0, inf, 30},    {0, 1e-300, 500, 0}, {10, 20, 30, 40},
                                                   {nan, nan, nan, nan}, {nan, -0.0, nan, 1}};
    for (const auto &values : spectra) {
        for (const int height : {2, 9, 40}) {
            for (const bool reversed : {false, true}) {
                TestSeries series;
                series.add(start + 5 * second, start + 15 * second, &values);
                auto p = plainParameters(4);
                p.reversedRows = reversed;
                QImage plain = blank(20, height), marked = blank(20, height);
                renderSpectrogram(series.source(), p, plain, {0, 20});
                p.marksZeros = true;
                renderSpectrogram(series.source(), p, marked, {0, 20});
                EXPECT_EQ(marked, markedPlainly(plain, values, p, 5, 15)) << values[1] << ' ' << height << reversed;
            }
        }
    }
}

TEST(SpectrogramExtremes, FarScalesAndTimesEnd)
{
    TestSeries series;
    const auto values = flat(2);
    const std::int64_t farthest = std::numeric_limits<std::int64_t>::max();
    for (std::int64_t begin : {-farthest - 1, -farthest / 2, std::int64_t(0), start, start + 1, farthest - 1})
        series.add(begin, begin < farthest / 2 ? begin + second : farthest, &values);
    for (std::int64_t perPixel : {std::int64_t(1), second, TimeScale::greatestTicksPerPixel}) {
        for (std::int64_t pixel : {-TimeScale::farPixel, std::int64_t(0), TimeScale::farPixel}) {
            for (std::int64_t origin : {-farthest, std::int64_t(0), start, farthest}) {
                auto p = plainParameters(2);
                p.scale = TimeScale(recordTimeFromTicks(origin), perPixel, pixel);
                for (bool fillGaps : {false, true}) {
                    p.fillGaps = fillGaps;
                    QImage expected = blank(30, 3), painted = blank(30, 3);
                    drawPlainly(series, p, expected, 0, 30, 0);
                    renderSpectrogram(series.source(), p, painted, {0, 30});
                    EXPECT_EQ(painted, expected) << perPixel << " " << pixel << " " << origin;
                }
            }
        }
    }
}

TEST(SpectrogramBackground, IsHalfToneOfTheLowestColor)
{
    EXPECT_EQ(Tsb::spectrogramBackground({}, false), QColor(Qt::white));
    EXPECT_EQ(Tsb::spectrogramBackground(Colormap::make(0), true), QColor(Qt::white));
    // jet starts at (0, 0, 127): gray (5 * 127) >> 5 = 19, halved; a quarter of it and half of the channel.
    EXPECT_EQ(Tsb::spectrogramBackground(Colormap::make(0), false), QColor(4, 4, 68));
}

} // namespace
