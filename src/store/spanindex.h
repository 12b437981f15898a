#pragma once

#include "util/recordtime.h"

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

/// The begin and end times of the entries of a sequence that ascends in begin time, apart from the entries themselves,
/// so that drawing and searching touch neither records nor spectra. The greatest end of each block of 64 entries lets a
/// walk pass over blocks that cannot reach a time. About 17 bytes an entry. Times are ticks; an end of 0 counts as the
/// begin. A value of its owner's thread.
class SpanIndex {
public:
    static constexpr std::size_t blockSize = 64;

    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    std::int64_t begin(std::size_t i) const { return m_blocks[i / blockSize].spans->begins[i % blockSize]; }
    /// Not below begin, unless the entry itself ends before it begins.
    std::int64_t end(std::size_t i) const { return m_blocks[i / blockSize].spans->ends[i % blockSize]; }
    /// The greatest end of the entries of the block that holds entry i.
    std::int64_t greatestEndOfBlock(std::size_t i) const { return m_blocks[i / blockSize].greatestEnd; }
    /// The least begin of the entries of that block.
    std::int64_t leastBeginOfBlock(std::size_t i) const { return m_blocks[i / blockSize].firstBegin; }
    /// Whether all begins and ends of that block lie in [from, until).
    bool blockLiesWithin(std::size_t i, std::int64_t from, std::int64_t until) const;

    /// Asks for the times of the block that holds entry i to be brought into the cache, if the tick lies between them;
    /// i may be beyond the end.
    void fetchIfCrossing(std::size_t i, std::int64_t tick) const;

    /// The same for the block that lowerBound() of that tick will look into.
    void fetchAround(std::int64_t tick) const;

    /// The entries from one on to the end of its block, in memory.
    struct Run {
        const std::int64_t *begins, *ends;
        std::size_t size;
    };
    Run runFrom(std::size_t i) const;

    /// The first entry whose begin isn't less than the tick; size() if there is none.
    std::size_t lowerBound(std::int64_t tick) const;
    /// The first entry at or after `from` whose end isn't less than the tick; size() if there is none. Entries after it
    /// may end earlier again: ends need not ascend. Skips whole blocks.
    std::size_t firstEndingFrom(std::size_t from, std::int64_t tick) const;
    /// The first entry at or after `from` that ends at or after the tick or whose follower begins there; size() if
    /// there is none. Skips whole blocks.
    std::size_t firstReachingFrom(std::size_t from, std::int64_t tick) const;
    /// The last entry before `before` whose end isn't less than the tick; size() if there is none. Skips whole blocks.
    std::size_t lastEndingFrom(std::size_t before, std::int64_t tick) const;

    // ---- for the owner of the sequence
    void append(RecordTime beginTime, RecordTime endTime);
    /// Moves the entries from i on by one place. Costs what lies behind i.
    void insert(std::size_t i, RecordTime beginTime, RecordTime endTime);
    /// Forgets the entries from `size` on.
    void truncate(std::size_t size);

private:
    struct Spans {
        std::array<std::int64_t, blockSize> begins;
        std::array<std::int64_t, blockSize> ends;
    };
    struct Block {
        std::int64_t firstBegin;
        std::int64_t leastEnd;
        std::int64_t greatestEnd;
        std::unique_ptr<Spans> spans;
    };

    void refresh(std::size_t block);
    /// The number of blocks that begin before the tick.
    std::size_t blocksBefore(std::int64_t tick) const;
    static void fetch(const Block &block);

    std::vector<Block> m_blocks;
    std::size_t m_size = 0;
};
