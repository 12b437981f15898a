#include "store/spanindex.h"

#include "records/recordhead.h"

#include <algorithm>
#include <utility>

std::size_t SpanIndex::blocksBefore(std::int64_t tick) const
{
    const auto next = std::lower_bound(m_blocks.begin(), m_blocks.end(), tick,
                                       [](const Block &block, std::int64_t t) { return block.firstBegin < t; });
    return std::size_t(next - m_blocks.begin());
}

std::size_t SpanIndex::lowerBound(std::int64_t tick) const
{
    // The answer is the first entry of the first block that begins at or after the tick, or lies in the block before.
    const std::size_t before = blocksBefore(tick);
    if (before == 0)
        return 0;
    const std::size_t block = before - 1;
    const auto &begins = m_blocks[block].spans->begins;
    const auto slot = std::lower_bound(begins.begin() + firstSlotOf(block), begins.begin() + endSlotOf(block), tick);
    return block * blockSize + std::size_t(slot - begins.begin()) - m_front;
}

std::size_t SpanIndex::firstEndingFrom(std::size_t from, std::int64_t tick) const
{
    std::size_t i = from;
    if (i < m_size && blockOf(i).reach < tick) {
        const auto block = std::partition_point(m_blocks.begin() + std::ptrdiff_t((m_front + i) / blockSize),
                                                m_blocks.end(), [tick](const Block &b) { return b.reach < tick; });
        i = std::size_t(block - m_blocks.begin()) * blockSize - m_front;
    }
    while (i < m_size) {
        const std::size_t blockEnd = std::min(m_size, i + blockSize - slotOf(i));
        if (blockOf(i).greatestEnd >= tick) {
            for (; i < blockEnd; ++i) {
                if (end(i) >= tick)
                    return i;
            }
        }
        i = blockEnd;
    }
    return m_size;
}

std::size_t SpanIndex::firstReachingFrom(std::size_t from, std::int64_t tick) const
{
    std::size_t slot = slotOf(from);
    for (std::size_t block = (m_front + from) / blockSize; block < m_blocks.size(); ++block, slot = 0) {
        const bool followedInTime = block + 1 < m_blocks.size() && m_blocks[block + 1].firstBegin >= tick;
        if (m_blocks[block].greatestEnd < tick && !followedInTime)
            continue;
        const Spans &spans = *m_blocks[block].spans;
        const std::size_t endSlot = endSlotOf(block);
        const auto entryAt = [&](std::size_t s) { return block * blockSize + s - m_front; };
        for (; slot + 1 < endSlot; ++slot) {
            if (spans.ends[slot] >= tick || spans.begins[slot + 1] >= tick)
                return entryAt(slot);
        }
        if (slot < endSlot && (spans.ends[slot] >= tick || followedInTime))
            return entryAt(slot);
    }
    return m_size;
}

bool SpanIndex::blockLiesWithin(std::size_t i, std::int64_t from, std::int64_t until) const
{
    const Block &block = blockOf(i);
    if (block.firstBegin < from || block.leastEnd < from || block.greatestEnd >= until)
        return false;
    // No begin is beyond that of the next block: the entries themselves are seldom looked at.
    const std::size_t next = (m_front + i) / blockSize + 1;
    if (next < m_blocks.size() && m_blocks[next].firstBegin < until)
        return true;
    return block.spans->begins[endSlotOf(next - 1) - 1] < until;
}

void SpanIndex::fetchIfCrossing(std::size_t i, std::int64_t tick) const
{
    if (i >= m_size)
        return;
    const Block &block = blockOf(i);
    if (block.firstBegin >= tick || block.greatestEnd < tick)
        return;
    const std::size_t slot = guessSlot((m_front + i) / blockSize, tick);
    __builtin_prefetch(&block.spans->begins[slot]);
    __builtin_prefetch(&block.spans->ends[slot]);
}

std::size_t SpanIndex::guessSlot(std::size_t block, std::int64_t tick) const
{
    const std::size_t first = firstSlotOf(block), end = endSlotOf(block);
    const std::int64_t from = m_blocks[block].firstBegin;
    const bool followed = block + 1 < m_blocks.size();
    const std::int64_t to = followed ? m_blocks[block + 1].firstBegin : m_blocks[block].greatestEnd;
    if (tick <= from || to <= from)
        return first;
    const double share = (double(tick) - double(from)) / (double(to) - double(from));
    return std::min(first + std::size_t(std::min(share, 1.0) * double(end - first)), end - 1);
}

std::size_t SpanIndex::guessInRun(std::size_t i, std::int64_t tick) const
{
    const std::size_t slot = guessSlot((m_front + i) / blockSize, tick);
    return slot - std::min(slot, slotOf(i));
}

SpanIndex::Run SpanIndex::runFrom(std::size_t i) const
{
    const Block &block = blockOf(i);
    const std::size_t slot = slotOf(i);
    const std::int64_t *const begins = block.spans->begins.data() + slot, *const ends = block.spans->ends.data() + slot;
    const bool knowsFirst = block.endsAscend && slot == firstSlotOf((m_front + i) / blockSize);
    return {begins,
            ends,
            std::min(blockSize - slot, m_size - i),
            block.endsAscend,
            knowsFirst ? block.firstBegin : *begins,
            knowsFirst ? block.leastEnd : *ends};
}

void SpanIndex::append(RecordTime beginTime, RecordTime endTime)
{
    const std::size_t slot = slotOf(m_size);
    const std::int64_t endTick = ticksOf(Spectrometer::effectiveEnd(beginTime, endTime));
    if (slot == 0)
        m_blocks.push_back({ticksOf(beginTime), endTick, endTick,
                            m_blocks.empty() ? endTick : std::max(m_blocks.back().reach, endTick), true,
                            makeInSlab<Spans>()});
    Block &last = m_blocks.back();
    last.spans->begins[slot] = ticksOf(beginTime);
    last.spans->ends[slot] = endTick;
    last.endsAscend = last.endsAscend && endTick >= last.greatestEnd;
    last.leastEnd = std::min(last.leastEnd, endTick);
    last.greatestEnd = std::max(last.greatestEnd, endTick);
    last.reach = std::max(last.reach, endTick);
    ++m_size;
}

void SpanIndex::insert(std::size_t i, RecordTime beginTime, RecordTime endTime)
{
    if (i == m_size) {
        append(beginTime, endTime);
        return;
    }
    append(beginTime, endTime); // makes room; what is carried over at the end is overwritten below
    std::int64_t carriedBegin = ticksOf(beginTime);
    std::int64_t carriedEnd = ticksOf(Spectrometer::effectiveEnd(beginTime, endTime));
    std::size_t slot = slotOf(i);
    for (std::size_t block = (m_front + i) / blockSize; block < m_blocks.size(); ++block, slot = 0) {
        Spans &spans = *m_blocks[block].spans;
        const std::size_t endSlot = endSlotOf(block);
        const std::int64_t lastBegin = spans.begins[endSlot - 1];
        const std::int64_t lastEnd = spans.ends[endSlot - 1];
        std::copy_backward(spans.begins.begin() + slot, spans.begins.begin() + endSlot - 1,
                           spans.begins.begin() + endSlot);
        std::copy_backward(spans.ends.begin() + slot, spans.ends.begin() + endSlot - 1, spans.ends.begin() + endSlot);
        spans.begins[slot] = std::exchange(carriedBegin, lastBegin);
        spans.ends[slot] = std::exchange(carriedEnd, lastEnd);
        refresh(block);
    }
}

void SpanIndex::insertOrForget(std::size_t i, RecordTime beginTime, RecordTime endTime) noexcept
{
    if (i > m_size)
        return;
    constexpr std::size_t farFromEnd = 4096;
    if (m_size - i > farFromEnd)
        return truncate(i);
    try {
        insert(i, beginTime, endTime);
    } catch (const std::bad_alloc &) { // which leaves all as it was
        truncate(i);
    }
}

void SpanIndex::truncate(std::size_t size)
{
    if (size >= m_size)
        return;
    m_size = size;
    if (isEmpty())
        m_front = 0;
    m_blocks.resize((endPlace() + blockSize - 1) / blockSize);
    if (endPlace() % blockSize != 0)
        refresh(m_blocks.size() - 1);
}

void SpanIndex::removeFirst(std::size_t count)
{
    if (count >= m_size)
        return truncate(0);
    m_front += count;
    m_size -= count;
    m_blocks.erase(m_blocks.begin(), m_blocks.begin() + std::ptrdiff_t(m_front / blockSize));
    m_front %= blockSize;
    refresh(0);
}

void SpanIndex::refresh(std::size_t block)
{
    Block &b = m_blocks[block];
    const std::size_t first = firstSlotOf(block);
    b.firstBegin = b.spans->begins[first];
    const auto from = b.spans->ends.begin() + first, to = b.spans->ends.begin() + endSlotOf(block);
    const auto [least, greatest] = std::minmax_element(from, to);
    b.endsAscend = std::is_sorted(from, to);
    b.leastEnd = *least;
    b.greatestEnd = *greatest;
    b.reach = block == 0 ? *greatest : std::max(m_blocks[block - 1].reach, *greatest);
}
