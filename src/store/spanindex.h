#pragma once

#include "util/recordtime.h"
#include "util/slabarray.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

/// The begin and end times of the entries of a sequence that ascends in begin time, apart from the entries themselves,
/// so that drawing and searching touch neither records nor spectra. The greatest end of each block of 64 entries lets a
/// walk pass over blocks that cannot reach a time. About 17 bytes an entry. Times are ticks; an end of 0 counts as the
/// begin. The first block may hold fewer entries than the others, as those at the front go. A value of its owner's
/// thread.
class SpanIndex {
public:
    static constexpr std::size_t blockSize = 64;

    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    std::int64_t begin(std::size_t i) const { return blockOf(i).spans->begins[slotOf(i)]; }
    /// Not below begin, unless the entry itself ends before it begins.
    std::int64_t end(std::size_t i) const { return blockOf(i).spans->ends[slotOf(i)]; }
    /// Whether all begins and ends of that block lie in [from, until).
    bool blockLiesWithin(std::size_t i, std::int64_t from, std::int64_t until) const;

    /// Where the tick lies in the run that runFrom(i) gives, if the entries of its block follow each other evenly: a
    /// place to begin a search at, below the run's size.
    std::size_t guessInRun(std::size_t i, std::int64_t tick) const;
    /// Prefetches the times around the tick if it lies within the block that holds entry i, which may be beyond the
    /// end.
    void fetchIfCrossing(std::size_t i, std::int64_t tick) const;

    /// The entries from entry i to the end of its block, as they lie in memory.
    struct Run {
        const std::int64_t *begins, *ends;
        std::size_t size;
        bool endsAscend;                   ///< true only if the ends ascend; may be false although they do
        std::int64_t firstBegin, firstEnd; ///< of the first entry, without a look at the arrays where that is known
    };
    Run runFrom(std::size_t i) const;

    /// The first entry whose begin isn't less than the tick; size() if there is none.
    std::size_t lowerBound(std::int64_t tick) const;
    /// The first entry at or after `from` whose end isn't less than the tick; size() if there is none. Entries after it
    /// may end earlier again: ends need not ascend. A bisection where they do; else skips whole blocks.
    std::size_t firstEndingFrom(std::size_t from, std::int64_t tick) const;
    /// The first entry at or after `from` that ends at or after the tick or whose follower begins there; size() if
    /// there is none. Skips whole blocks.
    std::size_t firstReachingFrom(std::size_t from, std::int64_t tick) const;

    // ---- for the owner of the sequence
    void append(RecordTime beginTime, RecordTime endTime);
    /// Moves the entries from i on by one place. The cost is linear in the entries behind i.
    void insert(std::size_t i, RecordTime beginTime, RecordTime endTime);
    /// The same for an entry that may lie beyond the end, of which nothing is kept then. Far from the end, or without
    /// memory, it forgets the values behind instead, to be appended anew when it is asked for.
    void insertOrForget(std::size_t i, RecordTime beginTime, RecordTime endTime) noexcept;
    /// Forgets the entries from `size` on.
    void truncate(std::size_t size);
    /// Forgets that many entries at the front, all of them if there are fewer. Moves none of the others.
    void removeFirst(std::size_t count);

private:
    struct Spans {
        std::array<std::int64_t, blockSize> begins;
        std::array<std::int64_t, blockSize> ends;
    };
    struct Block {
        std::int64_t firstBegin;
        std::int64_t leastEnd;
        std::int64_t greatestEnd;
        std::int64_t reach; ///< no end up to the block's last is greater; ascends with the blocks
        bool endsAscend;
        SlabPointer<Spans> spans; ///< among the records, on large pages: a column needs but few of them
    };

    // Entry i stands at place m_front + i of the blocks, one after the other.
    const Block &blockOf(std::size_t i) const { return m_blocks[(m_front + i) / blockSize]; }
    std::size_t slotOf(std::size_t i) const { return (m_front + i) % blockSize; }
    std::size_t endPlace() const { return m_front + m_size; }
    std::size_t firstSlotOf(std::size_t block) const { return block == 0 ? m_front : 0; }
    /// Behind the last slot in use.
    std::size_t endSlotOf(std::size_t block) const { return std::min(blockSize, endPlace() - block * blockSize); }

    void refresh(std::size_t block);
    /// The number of blocks that begin before the tick.
    std::size_t blocksBefore(std::int64_t tick) const;
    std::size_t guessSlot(std::size_t block, std::int64_t tick) const;

    std::vector<Block> m_blocks;
    std::size_t m_front = 0; ///< slots of the first block whose entries went; below blockSize
    std::size_t m_size = 0;
};
