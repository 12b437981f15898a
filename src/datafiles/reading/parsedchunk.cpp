#include "datafiles/reading/parsedchunk.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readAhead = 16 << 10;    // bytes looked at behind a chunk at once, for the end of its last line
constexpr std::size_t longestBehind = 2 << 20; // bytes of a last line behind its chunk, or of a file that grows

constexpr std::size_t leastCapacity = 384 << 10; // a piece of slab memory that shares its slab with no record

} // namespace

void ParsedChunk::start(std::int64_t begin, std::int64_t end, bool isLast)
{
    m_begin = begin;
    m_end = end;
    m_isLast = isLast;
    m_linesEnd = -1;
    m_size = 0;
    m_atFileEnd = false;
    m_isLastLineEnded = true;
    m_next = m_linesLimit = nullptr;
    isWhole = false;
    clear();
}

void ParsedChunk::clear()
{
    rows.clear();
    blocks.clear();
    m_blocksMemory = 0;
}

void ParsedChunk::addBlock(std::shared_ptr<const BlockForecast> block)
{
    m_blocksMemory += block->memory();
    blocks.push_back(std::move(block));
}

/// The byte before the chunk is read too: it tells whether a line begins with the chunk's first one.
std::int64_t ParsedChunk::offsetOf(std::size_t place) const
{
    return std::max<std::int64_t>(m_begin - 1, 0) + std::int64_t(place);
}

bool ParsedChunk::load(const DataFile &file)
{
    const auto wanted = std::size_t(m_end - offsetOf(0));
    if (!fill(file, wanted) || (m_size < wanted && !m_isLast))
        return false;
    if (m_isLast && !readLastLine(file))
        return false;
    std::size_t first = 0;
    if (m_begin > 0) {
        const void *lineEnd = std::memchr(m_bytes.get(), '\n', m_size);
        first = lineEnd ? std::size_t(static_cast<const char *>(lineEnd) - m_bytes.get()) + 1 : m_size;
    }
    if (first >= (m_isLast ? m_size : wanted))
        return true; // no line begins here
    if (!m_isLast && !readLastLine(file))
        return false;
    m_linesEnd = offsetOf(m_size);
    m_isLastLineEnded = m_bytes.get()[m_size - 1] == '\n';
    char *begin = m_bytes.get() + first, *end = m_bytes.get() + m_size;
    m_next = begin;
    m_linesLimit = std::memchr(begin, '\r', std::size_t(end - begin)) ? std::remove(begin, end, '\r') : end;
    return true;
}

/// Reads until there are that many bytes, or the file ends.
bool ParsedChunk::fill(const DataFile &file, std::size_t size)
{
    makeRoom(size);
    while (m_size < size && !m_atFileEnd) {
        const std::int64_t got = file.read(offsetOf(m_size), m_bytes.get() + m_size, size - m_size);
        if (got < 0)
            return false;
        m_atFileEnd = got == 0;
        m_size += std::size_t(got);
    }
    return true;
}

/// Reads on to the end of the last line that begins in the chunk; in the last chunk, to the end of the file.
bool ParsedChunk::readLastLine(const DataFile &file)
{
    const std::size_t limit = m_size + longestBehind;
    const auto isEnded = [this] { return !m_isLast && m_bytes.get()[m_size - 1] == '\n'; };
    while (!m_atFileEnd && !isEnded()) {
        const std::size_t before = m_size;
        if (before >= limit || !fill(file, before + readAhead))
            return false;
        const void *lineEnd = m_isLast ? nullptr : std::memchr(m_bytes.get() + before, '\n', m_size - before);
        if (lineEnd)
            m_size = std::size_t(static_cast<const char *>(lineEnd) - m_bytes.get()) + 1;
    }
    return m_isLast || isEnded() || offsetOf(m_size) >= file.size();
}

void ParsedChunk::makeRoom(std::size_t size)
{
    if (size <= m_capacity)
        return;
    const std::size_t capacity = std::max(size + readAhead, leastCapacity);
    std::unique_ptr<char, SlabBytesRelease> larger(static_cast<char *>(Slab::allocate(capacity)),
                                                   SlabBytesRelease{capacity});
    if (m_size > 0)
        std::memcpy(larger.get(), m_bytes.get(), m_size);
    m_bytes = std::move(larger);
    m_capacity = capacity;
}

bool ParsedChunk::nextLine(TextView *line)
{
    if (m_next == m_linesLimit)
        return false;
    const auto left = std::size_t(m_linesLimit - m_next);
    const auto *lineEnd = static_cast<const char *>(std::memchr(m_next, '\n', left));
    *line = TextView(m_next, lineEnd ? std::size_t(lineEnd - m_next) : left);
    m_next = lineEnd ? lineEnd + 1 : m_linesLimit;
    return true;
}
