#include "gui/browser/drawing/markerpainter.h"
#include "gui/browser/drawing/scatterseries.h"
#include "support/plainmarkers.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr int width = 40;

using MarkerPainter = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, MarkerPainter, ::testing::ValuesIn(seeds(3)));

TEST_P(MarkerPainter, WhatIsHeldBackGivesThePictureOfEachMarker)
{
    for (const int height : {1, 2, 5, 60}) {
        for (const auto &[first, last] : {std::pair(0, width), std::pair(7, 9), std::pair(38, width)}) {
            QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::white);
            PlainMarkers plain{image.copy(), first, last};
            const ValueScale scale{true, 0, 1, 0};
            std::uniform_real_distribution<double> value(-0.1 * height - 1, 1.1 * height + 1);
            {
                const auto colorOf = [](Tsb::MarkerPainter::Name name) {
                    return 0xff000000u | name * 2654435761u >> 8;
                };
                Tsb::MarkerPainter painter(image, first, last, colorOf);
                for (int run = 0; run < 300; ++run) {
                    const int column = int(random() % 50) - 5; // back and forth, and outside
                    constexpr std::size_t count = 5, lines = 2;
                    double values[lines][count];
                    Tsb::MarkerPlace places[lines][count];
                    for (std::size_t line = 0; line < lines; ++line) {
                        for (double &v : values[line])
                            v = random() % 20 == 0 ? std::nan("") : value(random);
                        Tsb::MarkerPlaces::of(scale, height, values[line], count, places[line]);
                    }
                    const auto nameOf = [&](std::size_t line, std::size_t k) {
                        return Tsb::MarkerPainter::Name(std::size_t(run) * 100 + line * 10 + k);
                    };
                    painter.setColumn(column);
                    for (std::size_t line = 0; line < lines; ++line)
                        painter.markEach(places[line], count, lines, line, nameOf(line, 0), 1);
                    for (std::size_t k = 0; k < count; ++k)
                        for (std::size_t line = 0; line < lines; ++line)
                            plain.mark(column, height - values[line][k], colorOf(nameOf(line, k)));
                }
            }
            EXPECT_EQ(image, plain.image) << height << ' ' << first;
        }
    }
}

using ColumnFinder = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, ColumnFinder, ::testing::ValuesIn(seeds(3)));

TEST_P(ColumnFinder, FindsWhatTheFormulaGives)
{
    std::mt19937_64 random64(GetParam());
    for (const std::int64_t perPixel :
         {std::int64_t(1), std::int64_t(7), std::int64_t(10'000'000), std::int64_t(1) << 39}) {
        const TimeScale scale(recordTimeFromTicks(17'000 * ticksPerDay), perPixel, 13);
        Tsb::ColumnFinder column(scale, 0, width);
        const Tsb::PositionMap position(scale);
        std::int64_t tick = ticksOf(scale.tickAt(0));
        for (int i = 0; i < 20'000; ++i) {
            // On and around the places where a column begins, and anywhere.
            const auto edge = ticksOf(scale.tickAt(std::int64_t(random64() % width))) + perPixel / 2;
            tick = i % 3 == 0 ? edge + std::int64_t(random64() % 5) - 2
                              : ticksOf(scale.tickAt(0)) + std::int64_t(random64() % std::uint64_t(perPixel * width));
            const double x = position(tick);
            if (!(x > -1.5 && x < width + 1.5))
                continue; // a marker further out doesn't show
            EXPECT_EQ(column(tick), int(x + 16.5) - 16);
        }
    }
}

} // namespace
