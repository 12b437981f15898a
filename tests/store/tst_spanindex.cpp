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
    std::size_t lastEndingFrom(std::size_t before, std::int64_t tick) const
    {
        for (std::size_t i = std::min(before, spans.size()); i-- > 0;) {
            if (spans[i].end >= tick)
                return i;
        }
        return spans.size();
    }
};

void expectEqual(const SpanIndex &index, const PlainSpans &plain)
{
    ASSERT_EQ(index.size(), plain.spans.size());
    for (std::size_t i = 0; i < index.size(); ++i) {
        ASSERT_EQ(index.begin(i), plain.spans[i].begin) << i;
        ASSERT_EQ(index.end(i), plain.spans[i].end) << i;
        std::int64_t greatest = plain.spans[i].end;
        const std::size_t block = i / SpanIndex::blockSize * SpanIndex::blockSize;
        for (std::size_t k = block; k < std::min(index.size(), block + SpanIndex::blockSize); ++k)
            greatest = std::max(greatest, plain.spans[k].end);
        ASSERT_EQ(index.greatestEndOfBlock(i), greatest) << i;
    }
}

TEST(SpanIndex, agrees_with_a_plain_list)
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
        }
        expectEqual(index, plain);
        for (int k = 0; k < 300; ++k) {
            const std::int64_t tick = number(5000) - 100;
            const auto place = std::size_t(number(operations + 2));
            ASSERT_EQ(index.lowerBound(tick), plain.lowerBound(tick));
            ASSERT_EQ(index.firstEndingFrom(place, tick), plain.firstEndingFrom(place, tick));
            ASSERT_EQ(index.firstReachingFrom(place, tick), plain.firstReachingFrom(place, tick));
            ASSERT_EQ(index.lastEndingFrom(place, tick), plain.lastEndingFrom(place, tick));
        }
    }
}

TEST(SpanIndex, a_missing_end_counts_as_the_begin)
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
