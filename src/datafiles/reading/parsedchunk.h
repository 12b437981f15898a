#pragma once

#include "datafiles/parsing/parsedrows.h"
#include "datafiles/reading/blockforecast.h"
#include "datafiles/reading/datafile.h"
#include "util/slabarray.h"

#include <memory>
#include <vector>

/// Gives bytes back that are slab memory: many as they are, the system has them again at once.
struct SlabBytesRelease {
    void operator()(char *bytes) const noexcept { Slab::release(bytes, size); }
    std::size_t size = 0;
};

/// A stretch of a file: the lines that begin in it, and what was parsed of them. The last one of a file goes as far as
/// the file does.
class ParsedChunk {
public:
    ParsedChunk(std::int64_t begin, std::int64_t end, bool isLast) { start(begin, end, isLast); }
    /// As a new one, but with the memory of the lists.
    void start(std::int64_t begin, std::int64_t end, bool isLast);
    /// Lets go of the rows.
    void clear();

    /// Reads the lines. False if the device fails, if the file isn't as long as it was, or if a line is too long to be
    /// held beside others: then the file is to be read as one from here on.
    bool load(const DataFile &file);
    /// The next line; false behind the last one.
    bool nextLine(TextView *line);

    bool isFirst() const { return m_begin == 0; }
    bool isLast() const { return m_isLast; }
    /// The offset behind the last line, or a negative one if no line begins in the chunk.
    std::int64_t linesEnd() const { return m_linesEnd; }
    /// Whether the last line has a line feed.
    bool isLastLineEnded() const { return m_isLastLineEnded; }
    /// Memory that all of it takes.
    std::size_t memory() const { return m_capacity + m_blocksMemory + rows.memory(); }
    /// A block whose header stands in the chunk.
    void addBlock(std::shared_ptr<const BlockForecast> block);

    ParsedRows rows;
    std::vector<std::shared_ptr<const BlockForecast>> blocks; ///< by which rows were parsed
    bool isWhole = false;                                     ///< all lines are in the rows

private:
    std::int64_t offsetOf(std::size_t place) const;
    bool fill(const DataFile &file, std::size_t size);
    bool readLastLine(const DataFile &file);
    void makeRoom(std::size_t size);

    std::int64_t m_begin = 0;
    std::int64_t m_end = 0;
    bool m_isLast = false;
    std::int64_t m_linesEnd = -1;
    std::unique_ptr<char, SlabBytesRelease> m_bytes;
    std::size_t m_capacity = 0;
    std::size_t m_blocksMemory = 0;
    std::size_t m_size = 0;
    bool m_atFileEnd = false;
    bool m_isLastLineEnded = true;
    const char *m_next = nullptr;
    const char *m_linesLimit = nullptr;
};
