#include "gui/browser/drawing/barstrip.h"
#include "support/seeds.h"

#include <QPainter>

#include <chrono>
#include <cmath>

namespace {

const QColor yellow(196, 160, 0), blue(32, 74, 135);
QColor tint(const QColor &color)
{
    return {color.red() / 2 + 127, color.green() / 2 + 127, color.blue() / 2 + 127};
}
/// Styles: 2 m and 2 m + 1 are mode m at full and half height.
enum Style { Yellow, HalfYellow, Blue, HalfBlue, NoPen };

/// A made-up run of records on a white strip, in pixels.
struct Strip {
    Strip()
    {
        for (const QColor &color : {yellow, blue})
            for (const bool half : {false, true})
                styles.push_back({QPen(QBrush(color), 0, Qt::SolidLine, Qt::SquareCap), QBrush(tint(color)), half});
        styles.push_back({QPen(Qt::NoPen), QBrush(QColor(238, 238, 236)), false});
    }
    void add(double begin, double length, int style)
    {
        const auto tick = [this](double x) {
            return recordTimeFromTicks(ticksOf(scale.originTick) + std::llround(x * double(scale.ticksPerPixel)));
        };
        spans.append(tick(begin), tick(begin + length));
        styleOf.push_back(std::uint8_t(style));
    }
    QImage drawn(int first = 0, int last = width)
    {
        QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter target(&image);
        painter.draw(target, height, {&spans, styleOf.data(), &styles}, scale, first, last);
        return image;
    }
    static constexpr int width = 300, height = 20;
    TimeScale scale{recordTimeFromTicks(1'000'000'000'000), 1'000'000, 0};
    SpanIndex spans;
    std::vector<std::uint8_t> styleOf;
    std::vector<Tsb::BarStyle> styles;
    Tsb::BarStripPainter painter;
};

/// How much of a middle row is yellow, blue and white, which are mixed in its pixels.
struct Shares {
    double yellow, blue, white;
};
Shares sharesOf(const QImage &image)
{
    double red = 0, blueness = 0; // below those of white
    for (int x = 0; x < image.width(); ++x) {
        red += (255 - qRed(image.pixel(x, image.height() / 2))) / 255.0 / image.width();
        blueness += (255 - qBlue(image.pixel(x, image.height() / 2))) / 255.0 / image.width();
    }
    const double yr = 1 - yellow.redF(), yb = 1 - yellow.blueF(), br = 1 - blue.redF(), bb = 1 - blue.blueF();
    const double y = (red * bb - blueness * br) / (yr * bb - yb * br);
    const double b = (yr * blueness - yb * red) / (yr * bb - yb * br);
    return {y, b, 1 - y - b};
}

TEST(BarStrip, ModesOfAboutAPixelKeepTheirSharesAtEveryPhaseAndAGapOfAPixelStays)
{
    for (const double length : {0.8, 1.2}) {
        double gap = 0;
        for (int phase = 0; phase < 64; ++phase) {
            Strip even, gapped; // the second with a gap of a pixel after each ten bars
            for (int i = -3; i * length < Strip::width + 3; ++i) {
                even.add(i * length + phase / 64.0, length, i % 2 == 0 ? Yellow : Blue);
                gapped.add(i * length + (i + 10) / 10 + phase / 64.0, length, i % 2 == 0 ? Yellow : Blue);
            }
            const Shares shares = sharesOf(even.drawn());
            EXPECT_NEAR(shares.yellow, 0.5, 0.05) << length << ", phase " << phase;
            EXPECT_NEAR(shares.blue, 0.5, 0.05) << length << ", phase " << phase;
            gap += (sharesOf(gapped.drawn()).white - shares.white) * (10 * length + 1) / 64;
        }
        EXPECT_NEAR(gap, 0.8, 0.15) << "pixels of white, bars of " << length;
    }
}

TEST(BarStrip, AColumnOfNarrowBarsIsTheMeanOfTheirPensByLength)
{
    const QColor white(Qt::white), grey(114, 117, 68); // the mean of both modes
    struct Bar {
        double begin, length;
        int style;
    };
    const struct {
        const char *name;
        std::vector<Bar> bars;
        QColor centre, edge; ///< in the row in the middle, and in row 2, which bars of half height don't reach
    } cases[] = {
        {"as long as each other", {{10.1, 0.2, Yellow}, {10.5, 0.2, Blue}}, grey, grey},
        {"by length", {{10.1, 0.3, Yellow}, {10.5, 0.1, Blue}}, {155, 139, 34}, {155, 139, 34}},
        {"a moment is a tick", {{10.3, 0, Yellow}, {10.3, 1e-6, Blue}}, grey, grey},
        {"one that ends before it begins, too", {{10.3, -5, Yellow}, {10.3, 0, Blue}}, grey, grey},
        {"the column of the middle", {{9.2, 0.9, Blue}, {9.5, 1, Yellow}, {10.9, 0.3, Blue}}, yellow, yellow},
        {"half height", {{10.1, 0.2, HalfYellow}}, yellow, white},
        {"half and full", {{10.1, 0.2, HalfYellow}, {10.5, 0.2, Blue}}, grey, blue},
        {"without a pen", {{10.1, 0.2, NoPen}}, white, white},
        {"one flag", {{10, 0.5, NoPen}, {10.5, 0.001, Blue}, {10.6, 0.3, NoPen}}, blue, blue},
        {"upon a wide bar", {{8, 5, Blue}, {10.1, 0.2, HalfYellow}}, yellow, tint(blue)},
    };
    for (const auto &c : cases) {
        Strip strip;
        for (const Bar &bar : c.bars)
            strip.add(bar.begin, bar.length, bar.style);
        const QImage image = strip.drawn();
        EXPECT_EQ(image.pixelColor(10, Strip::height / 2), c.centre) << c.name;
        EXPECT_EQ(image.pixelColor(10, 2), c.edge) << c.name;
    }
}

TEST(BarStrip, OfWideBarsInTheSameColumnsOnlyTheLastIsDrawn)
{
    Strip both, last;
    both.add(10.2, 20, Blue);
    both.add(10.7, 19, Yellow); // another last column
    both.add(10.7, 19.9, HalfYellow);
    last.add(10.7, 19, Yellow);
    last.add(10.7, 19.9, HalfYellow);
    EXPECT_EQ(both.drawn(), last.drawn());
    QImage plain(Strip::width, Strip::height, QImage::Format_ARGB32_Premultiplied);
    plain.fill(Qt::white);
    QPainter painter(&plain);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(last.styles[Yellow].pen);
    painter.setBrush(last.styles[Yellow].brush);
    painter.drawRect(QRectF(11.1875, 1.5, 18, 17)); // from half a pixel inside to half a pixel inside, in 64ths
    painter.setBrush(last.styles[HalfYellow].brush);
    painter.drawRect(QRectF(11.1875, 6.75, 18.90625, 6.5));
    painter.end();
    EXPECT_EQ(both.drawn(), plain);
}

/// As of a clock that stood still: half a million would hold the window for minutes if each were drawn.
TEST(BarStrip, RecordsOfOneBeginTakeNoTime)
{
    const auto secondsFor = [](int bars, double beginStep, double endStep) {
        Strip strip;
        for (int i = 0; i < bars; ++i)
            strip.add(1 + i * beginStep, 200 + i * (endStep - beginStep), i % 3);
        const auto start = std::chrono::steady_clock::now();
        strip.drawn();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const double apart = secondsFor(3000, 0.01, 1);
    EXPECT_LT(secondsFor(20'000, 0, 0), apart) << "all end together";
    EXPECT_LT(secondsFor(20'000, 0, 0.001), apart) << "each ends later than the one before";
}

using RandomStrip = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, RandomStrip, ::testing::ValuesIn(seeds(3)));

/// Bars of all lengths, gaps, bars upon each other, and times out of all reason.
TEST_P(RandomStrip, AColumnDependsOnNothingButItsOwnBars)
{
    for (const double perPixel : {0.2, 1.0, 6.0, 60.0}) {
        Strip strip;
        strip.add(-1e9, pick(0, 1) * 1e9 + 20, NoPen);
        double at = -3;
        for (int i = 0; at < Strip::width + 3; ++i) {
            const bool isLong = pick(0, 30) == 0;
            strip.add(at, (isLong ? pick(0, 4000) : pick(0, 200)) / 100.0 / perPixel, pick(0, 4));
            at += pick(0, 50) == 0 ? 3 : pick(0, 200) / 100.0 / perPixel;
        }
        strip.add(at, 1e12, Blue);
        const QImage whole = strip.drawn();
        for (int first = 0; first < Strip::width;) {
            const int last = std::min(Strip::width, first + pick(1, 9));
            const QImage part = strip.drawn(first, last);
            for (int x = first - 1; x <= last; ++x)
                for (int y = 0; y < Strip::height && x >= 0 && x < Strip::width; ++y)
                    ASSERT_EQ(part.pixel(x, y), x >= first && x < last ? whole.pixel(x, y) : qRgb(255, 255, 255))
                        << perPixel << " to a pixel, column " << x << ", row " << y;
            first = last;
        }
    }
}

} // namespace
