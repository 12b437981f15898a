#include "columns/measurement.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Entries of odd lengths that overlap and leave gaps, some without a value.
class Measuring : public Seeded<> {
protected:
    struct Entry {
        std::int64_t begin, end;
        double value;
        std::int64_t middle() const { return begin + (end - begin) / 2; }
    };

    Measuring()
    {
        const double rare[] = {std::nan(""), std::nan(""), infinity, 0.0, -7.5};
        std::int64_t begin = 1000;
        for (int i = pick(0, 400); i > 0; --i) {
            begin += pick(0, 9);
            const bool isRare = random() % 3 == 0;
            entries.push_back({begin, begin + pick(0, 20), isRare ? rare[random() % 5] : pick(1, 100000) / 16.0});
            spans.append(recordTimeFromTicks(begin), recordTimeFromTicks(entries.back().end));
        }
        for (const Entry &entry : entries) {
            plain.push_back(entry.value);
            decades.push_back(entry.value <= 0 ? -infinity : std::log10(entry.value));
        }
    }
    std::int64_t anyTick() { return 950 + pick(0, 2200); }
    Tsb::MeasuredCurve curve(bool inDecades) const
    {
        if (!inDecades)
            return {spans, plain.data()};
        return {spans, decades.data(), [this](std::size_t i) { return entries[i].value; }};
    }

    std::vector<Entry> entries;
    SpanIndex spans;
    std::vector<double> plain, decades;
};

INSTANTIATE_TEST_SUITE_P(Seeds, Measuring, ::testing::ValuesIn(seeds(40)));

TEST_P(Measuring, FiguresAreThoseOfAPlainLoop)
{
    const std::int64_t from = anyTick(), until = anyTick();
    std::size_t count = 0;
    double least = infinity, greatest = -infinity;
    long double sum = 0;
    for (const Entry &entry : entries) {
        if (entry.middle() < std::min(from, until) || entry.middle() > std::max(from, until) ||
            !std::isfinite(entry.value))
            continue;
        ++count;
        least = std::min(least, entry.value);
        greatest = std::max(greatest, entry.value);
        sum += entry.value;
    }
    for (const bool inDecades : {false, true}) {
        SCOPED_TRACE(inDecades);
        const Tsb::SpanFigures figures =
            figuresBetween(curve(inDecades), recordTimeFromTicks(from), recordTimeFromTicks(until));
        ASSERT_EQ(figures.count, count);
        if (count == 0) {
            EXPECT_TRUE(std::isnan(figures.least) && std::isnan(figures.greatest) && std::isnan(figures.mean));
            continue;
        }
        EXPECT_NEAR(figures.least, least, 1e-12 * std::abs(least));
        EXPECT_NEAR(figures.greatest, greatest, 1e-12 * std::abs(greatest));
        EXPECT_NEAR(figures.mean, double(sum / count), 1e-12 * 100000);
    }
}

TEST_P(Measuring, ValueAtAMomentIsTheOneThatAClickThereMeans)
{
    for (int repeat = 0; repeat < 20; ++repeat) {
        const std::int64_t tick = anyTick();
        const Entry *previous = nullptr, *next = nullptr;
        for (const Entry &entry : entries) {
            if (std::isnan(entry.value))
                continue;
            if (entry.begin < tick)
                previous = &entry;
            else if (!next)
                next = &entry;
        }
        const bool isPrevious = previous && (!next || tick - previous->end < next->begin - tick);
        const Entry *expected = isPrevious ? previous : next;
        for (const bool inDecades : {false, true}) {
            const Tsb::ValueAt found = valueAt(curve(inDecades), recordTimeFromTicks(tick));
            if (!expected) {
                EXPECT_TRUE(std::isnan(found.value));
            } else if (std::isinf(expected->value)) {
                EXPECT_EQ(found.value, expected->value);
            } else {
                EXPECT_NEAR(found.value, expected->value, 1e-12 * std::abs(expected->value)) << tick;
                EXPECT_EQ(ticksOf(found.middle), expected->middle()) << tick;
            }
        }
    }
}

} // namespace
