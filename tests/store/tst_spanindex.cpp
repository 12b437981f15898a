#include "store/spanindex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

struct Span {
    std::int64_t begin, end;
};

/// The same operations on a plain list.
class PlainSpans {
public:
    std::vector<Span> spans;

    std::size_t lowerBound(std::int64_t tick) const
    {
        return std::size_t(std::find_if(spans.begin(), spans.end(), [tick](Span s) { return s.begin >= tick; }) -
                           spans.begin());
    }
    std::size_t firstEndingFrom(std::size_t from, std::int64_t tick) const
    {
        for (std::size_t i = from; i < spans.size(); ++i) {
            if (spans[i].end >= tick)
                return i;
        }
        return spans.size();
    }
    std::size_t firstReachingFrom(std::size_t from, std::int64_t tick) const
    {
        for (std::size_t i = from; i < spans.size(); ++i) {
            if (spans[i].end >= tick || (i + 1 < spans.size() && spans[i + 1].begin >= tick))
                return i;
        }
        return spans.size();
    }
};

/// What the index tells of entries and blocks, a block being what runFrom() gives at its first entry.
void expectEqual(const SpanIndex &index, const PlainSpans &plain)
{
    ASSERT_EQ(index.size(), plain.spans.size());
    const std::size_t blockSize = SpanIndex::blockSize;
    for (std::size_t first = 0, size = 0; first < index.size(); first += size) {
        size = index.runFrom(first).size;
        const bool atAnEnd = first == 0 || first + size == index.size();
        ASSERT_TRUE(atAnEnd ? size > 0 && size <= blockSize : size == blockSize) << size << " from " << first;
        const auto block = plain.spans.begin() + std::ptrdiff_t(first), blockEnd = block + std::ptrdiff_t(size);
        const auto [least, greatest] =
            std::minmax_element(block, blockEnd, [](Span a, Span b) { return a.end < b.end; });
        const std::int64_t from = std::min(block->begin, least->end);
        const std::int64_t until = std::max((blockEnd - 1)->begin, greatest->end) + 1;
        for (std::size_t i = first; i < first + size; ++i) {
            ASSERT_EQ(index.begin(i), plain.spans[i].begin) << i;
            ASSERT_EQ(index.end(i), plain.spans[i].end) << i;
            ASSERT_TRUE(index.blockLiesWithin(i, from, until)) << i;
            ASSERT_FALSE(index.blockLiesWithin(i, from + 1, until)) << i;
            ASSERT_FALSE(index.blockLiesWithin(i, from, until - 1)) << i;
            const SpanIndex::Run run = index.runFrom(i);
            ASSERT_EQ(run.size, first + size - i) << i;
            ASSERT_EQ(run.begins[0], plain.spans[i].begin) << i;
            ASSERT_EQ(run.ends[0], plain.spans[i].end) << i;
            ASSERT_EQ(run.firstBegin, plain.spans[i].begin) << i;
            ASSERT_EQ(run.firstEnd, plain.spans[i].end) << i;
            ASSERT_TRUE(!run.endsAscend || std::is_sorted(run.ends, run.ends + run.size)) << i;
            ASSERT_LT(index.guessInRun(i, plain.spans[first].begin + std::int64_t(i)), run.size) << i;
        }
    }
}

TEST(SpanIndex, AgreesWithAPlainList)
{
    std::mt19937 random(7);
    const auto number = [&random](std::int64_t below) { return std::int64_t(random() % std::uint64_t(below)); };
    for (int round = 0; round < 60; ++round) {
        SpanIndex index;
        PlainSpans plain;
        const int operations = 1 + int(number(400));
        for (int k = 0; k < operations; ++k) {
            const std::int64_t begin = number(3000);
            const std::int64_t end = begin + (number(20) == 0 ? number(1500) : number(10));
            const std::size_t place = plain.lowerBound(begin);
            index.insert(place, recordTimeFromTicks(begin), recordTimeFromTicks(end));
            plain.spans.insert(plain.spans.begin() + std::ptrdiff_t(place), {begin, end == 0 ? begin : end});
            if (number(300) == 0) {
                const auto size = std::size_t(number(std::int64_t(plain.spans.size()) + 2));
                index.truncate(size);
                plain.spans.resize(std::min(size, plain.spans.size()));
            }
            // Some rounds lose at the front about what comes in, others what makes many blocks go at once.
            if (number(round % 3 == 0 ? 2 : 100) == 0) {
                const auto count = std::size_t(number(round % 3 == 0 ? 3 : 200));
                index.removeFirst(count);
                plain.spans.erase(plain.spans.begin(),
                                  plain.spans.begin() + std::ptrdiff_t(std::min(count, plain.spans.size())));
            }
            if (k % 37 == 0)
                expectEqual(index, plain);
        }
        expectEqual(index, plain);
        for (int k = 0; k < 300; ++k) {
            const std::int64_t tick = number(5000) - 100;
            const auto place = std::size_t(number(operations + 2));
            ASSERT_EQ(index.lowerBound(tick), plain.lowerBound(tick));
            ASSERT_EQ(index.firstEndingFrom(place, tick), plain.firstEndingFrom(place, tick));
            ASSERT_EQ(index.firstReachingFrom(place, tick), plain.firstReachingFrom(place, tick));
        }
    }
}

TEST(SpanIndex, WhatGoesAtTheFrontMovesNothing)
{
    SpanIndex index;
    for (int i = 0; i < 1000; ++i)
        index.append(recordTimeFromTicks(10 + i), recordTimeFromTicks(11 + i));
    const std::int64_t *const last = index.runFrom(999).begins;
    for (std::size_t size = 1000; size > 1; --size) {
        ASSERT_EQ(index.size(), size);
        ASSERT_EQ(index.runFrom(size - 1).begins, last);
        index.removeFirst(1);
    }
    index.removeFirst(5);
    EXPECT_TRUE(index.isEmpty());
    index.append(recordTimeFromTicks(7), recordTimeFromTicks(8));
    EXPECT_EQ(index.begin(0), 7);
}

TEST(SpanIndex, AMissingEndCountsAsTheBegin)
{
    SpanIndex index;
    index.append(recordTimeFromTicks(5), recordTimeFromTicks(0));
    index.append(recordTimeFromTicks(9), recordTimeFromTicks(7)); // ends before it begins: left as it is
    EXPECT_EQ(index.end(0), 5);
    EXPECT_EQ(index.end(1), 7);
    EXPECT_EQ(SpanIndex().lowerBound(0), 0u);
    EXPECT_EQ(SpanIndex().firstEndingFrom(0, 0), 0u);
}

} // namespace
