#include "gui/browser/drawing/barstrip.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <random>

namespace {

using Tsb::BarStripPainter;

/// A made-up run of records, and the strip painted in both ways.
class Strip {
public:
    explicit Strip(int height = 20) : m_height(height)
    {
        for (const QColor &color : {QColor(196, 160, 0), QColor(32, 74, 135), QColor(164, 0, 0)}) {
            m_styles.push_back({QPen(QBrush(color), 0, Qt::SolidLine, Qt::SquareCap), QBrush(color.lighter()), false});
            m_styles.push_back({QPen(QBrush(color), 0, Qt::SolidLine, Qt::SquareCap), QBrush(Qt::white), true});
        }
        m_styles.push_back({QPen(Qt::NoPen), QBrush(QColor(238, 238, 236)), false});
        m_source.spans = &m_spans;
        m_source.styles = &m_styles;
        m_scale = TimeScale(recordTimeFromTicks(1'000'000'000), 1'000'000, 0);
    }

    void add(double beginPixel, double pixels, int style)
    {
        const auto tick = [this](double x) {
            return recordTimeFromTicks(ticksOf(m_scale.originTick) + std::int64_t(x * double(m_scale.ticksPerPixel)));
        };
        m_spans.append(tick(beginPixel), tick(beginPixel + pixels));
        m_styleOf.push_back(std::uint8_t(style));
    }

    void removeFirst(std::size_t count)
    {
        m_spans.removeFirst(count);
        m_styleOf.erase(m_styleOf.begin(), m_styleOf.begin() + std::ptrdiff_t(count));
    }

    QImage painted(bool eachBar, int first = 0, int last = width)
    {
        m_source.styleOf = m_styleOf.data();
        QImage image(width, m_height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setClipRect(first, 0, last - first, m_height);
        if (eachBar)
            BarStripPainter::drawEachBar(painter, m_height, m_source, m_scale, first, last);
        else
            m_painter.draw(painter, image, m_source, m_scale, first, last);
        painter.end();
        return image;
    }

    static constexpr int width = 300;

private:
    int m_height;
    TimeScale m_scale;
    SpanIndex m_spans;
    std::vector<std::uint8_t> m_styleOf;
    std::vector<Tsb::BarStyle> m_styles;
    Tsb::BarStripSource m_source;
    BarStripPainter m_painter;
};

int greatestDifference(const QImage &a, const QImage &b)
{
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
        }
    return greatest;
}

TEST(BarStrip, looks_as_if_every_bar_were_drawn)
{
    const struct {
        const char *name;
        double perPixel; ///< records in a pixel
        double widest;   ///< pixels
        int runs;        ///< so many of a style after each other
        int styles;      ///< how many of the styles occur, or that one alone as a negative number
        int atOnce = 1;  ///< so many begin at the same time
    } cases[] = {
        {"wide bars", 0.1, 9, 1, 6},
        {"about a pixel", 0.8, 2, 1, 6},
        {"a few to a pixel", 4, 0.3, 1, 6},
        {"dozens to a pixel", 40, 0.025, 1, 6},
        {"hundreds", 250, 0.004, 1, 5},
        {"hundreds in runs", 250, 0.004, 400, 7},
        {"dozens in runs", 45, 0.02, 40, 7},
        {"mixed widths", 3, 1.6, 1, 7},
        {"only without the flag", 20, 0.05, 1, 7},
        {"all provisional", 250, 0.004, 1, -1},
        {"none with the flag", 250, 0.004, 1, -6},
        {"many at a time", 2, 0.01, 1, 6, 200},
        {"full and half at a time", 8, 0.01, 30, 2, 30},
    };
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(0, 1);
    for (const auto &c : cases) {
        for (const int height : {3, 5, 8, 12, 15, 20, 23, 64}) {
            Strip strip(height);
            double x = -3;
            int i = 0;
            while (x < Strip::width + 3) {
                strip.add(x, c.widest * uniform(random), c.styles < 0 ? -c.styles : (i / c.runs) % c.styles);
                ++i;
                if (i % c.atOnce == 0)
                    x += 2 * uniform(random) / c.perPixel;
            }
            EXPECT_LE(greatestDifference(strip.painted(false), strip.painted(true)), 2)
                << c.name << ", height " << height;
        }
    }
}

TEST(BarStrip, of_bars_upon_each_other_the_last_are_enough)
{
    for (const double begin : {10.0, 10.005, 10.1, 10.5, 10.97}) {
        for (const int styles : {2, 5, 7}) { // full and half by turns, runs of each, and some without an outline
            Strip strip;
            for (int i = 0; i < 3; ++i)
                strip.add(5, 30, i);
            for (int i = 0; i < 6000; ++i)
                strip.add(begin, 20.3, i / 1500 * 2 % styles + (styles == 2 ? i % 2 : 0));
            strip.add(begin, 9, 0);
            EXPECT_LE(greatestDifference(strip.painted(false), strip.painted(true)), 2) << begin << ' ' << styles;
        }
    }
}

TEST(BarStrip, long_bars_upon_each_other_look_as_if_every_one_were_drawn)
{
    std::mt19937 random(8);
    for (const int styles : {1, 6, 7}) {
        for (const double step : {0.0, 0.003, 0.02}) { // from all begins at the same time to a slow march
            Strip strip;
            for (int i = 0; i < 5000; ++i)
                strip.add(20 + i * step, 1 + double(random() % 2000) / 10, int(random() % unsigned(styles)));
            EXPECT_LE(greatestDifference(strip.painted(false), strip.painted(true)), 2) << styles << ' ' << step;
        }
    }
}

/// Half a million would hold the window for minutes.
TEST(BarStrip, records_of_one_begin_take_no_time)
{
    for (const double step : {0.0, 0.001}) { // all end together, or each later than the one before
        const auto secondsFor = [step](int bars) {
            Strip strip;
            for (int i = 0; i < bars; ++i)
                strip.add(1, 200 + i * step, i % 3 * 2);
            const auto start = std::chrono::steady_clock::now();
            strip.painted(false);
            return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        };
        EXPECT_LT(secondsFor(40'000), 10 * secondsFor(1000)) << step;
    }
}

TEST(BarStrip, forgotten_records_hide_no_wide_bar)
{
    for (const int lost : {1, 10, 63}) {
        Strip strip;
        for (int i = 0; i < 300; ++i)
            strip.add(100 + i * 0.01, i % 64 >= 54 ? 5 : 0.008, i % 6);
        strip.removeFirst(std::size_t(lost));
        EXPECT_LE(greatestDifference(strip.painted(false), strip.painted(true)), 2) << lost;
    }
}

TEST(BarStrip, a_column_alone_is_the_same_as_with_all_others)
{
    for (const double perPixel : {1.0, 6.0, 60.0, 300.0}) {
        Strip strip;
        for (int i = 0; i < Strip::width * perPixel; ++i)
            if (i / 500 % 3 != 2) // with gaps
                strip.add(i / perPixel, 0.8 / perPixel, i % 20 == 19 ? 1 : i % 3 * 2);
        const QImage whole = strip.painted(false);
        for (int x = 0; x < Strip::width; ++x)
            ASSERT_EQ(strip.painted(false, x, x + 1).copy(x, 0, 1, whole.height()), whole.copy(x, 0, 1, whole.height()))
                << perPixel << " to a pixel, column " << x;
    }
}

TEST(BarStrip, draws_only_the_columns_that_it_is_asked_for)
{
    Strip strip;
    for (int i = 0; i < 30000; ++i)
        strip.add(i * 0.01, i % 1000 == 0 ? 3.0 : 0.008, i % 6);
    const QImage whole = strip.painted(false);
    const QImage part = strip.painted(false, 100, 140);
    for (int x = 0; x < Strip::width; ++x)
        for (int y = 0; y < whole.height(); ++y)
            ASSERT_EQ(part.pixel(x, y), x >= 100 && x < 140 ? whole.pixel(x, y) : qRgb(255, 255, 255)) << x << ' ' << y;
}

TEST(BarStrip, absurd_times_are_drawn_as_each_bar_would_be)
{
    Strip strip;
    strip.add(-1e9, 2e9, 0);
    strip.add(5, -200, 1);
    for (int i = 0; i < 1000; ++i)
        strip.add(5, 0, 2);
    for (int i = 0; i < 100; ++i)
        strip.add(20 + i * 0.01, i % 3 - 1, 4); // some end before they begin
    strip.add(50, 1e12, 3);
    EXPECT_LE(greatestDifference(strip.painted(false), strip.painted(true)), 2);
}

} // namespace
