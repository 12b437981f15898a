#include "datafiles/reading/linescanner.h"

#include "datafiles/parsing/filereadererror.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

constexpr std::int64_t largestBlock = 1 << 20;
constexpr std::int64_t blockBeyondSize = 16 << 10;

/// Takes the carriage returns out; the result is the new end.
char *removeCarriageReturns(char *begin, char *end)
{
    auto *found = static_cast<char *>(std::memchr(begin, '\r', std::size_t(end - begin)));
    return found ? std::remove(found, end, '\r') : end;
}

} // namespace

bool LineScanner::open(const QString &path)
{
    m_file = DataFile::open(path);
    return m_file != nullptr;
}

void LineScanner::open(std::shared_ptr<const DataFile> file, std::int64_t offset, std::int64_t end)
{
    m_file = std::move(file);
    m_offset = offset;
    m_limit = end;
}

LineScanner::Found LineScanner::next(QByteArray *line)
{
    char *lineEnd = findLineEnd();
    while (!lineEnd && m_end - m_begin <= m_lineLimit && fill())
        lineEnd = findLineEnd();
    const std::size_t end = lineEnd ? std::size_t(lineEnd - m_buffer.get()) : m_end;
    if (end - m_begin > m_lineLimit)
        return skipLine();
    if (!lineEnd && m_begin == m_end)
        return Found::end;
    m_isLineEnded = lineEnd != nullptr;
    *line = QByteArray::fromRawData(m_buffer.get() + m_begin, int(end - m_begin));
    m_begin = std::min(end + 1, m_end);
    m_scanned = m_begin;
    return Found::line;
}

char *LineScanner::findLineEnd()
{
    if (m_scanned == m_end)
        return nullptr;
    auto *found = static_cast<char *>(std::memchr(m_buffer.get() + m_scanned, '\n', m_end - m_scanned));
    m_scanned = found ? std::size_t(found - m_buffer.get()) : m_end;
    return found;
}

/// Reads another block behind what is there. False at the end of the file.
bool LineScanner::fill()
{
    if (m_atEnd)
        return false;
    // A small file takes little memory. What was added to it since it was opened comes in small blocks.
    const std::int64_t known = std::max(blockBeyondSize, m_file->size() - m_offset);
    const auto wanted = std::size_t(std::min({largestBlock, known, m_limit - m_offset}));
    makeRoom(wanted);
    const std::int64_t got = wanted > 0 ? m_file->read(m_offset, m_buffer.get() + m_end, wanted) : 0;
    if (got < 0)
        throw FileReaderError(QString::fromLocal8Bit(std::strerror(errno)));
    m_atEnd = got == 0;
    m_offset += got;
    if (m_counter && got > 0)
        m_counter(got);
    char *added = m_buffer.get() + m_end;
    m_end = std::size_t(removeCarriageReturns(added, added + got) - m_buffer.get());
    return got > 0;
}

/// Moves the unfinished line to the front of the buffer, and makes the buffer hold that many bytes behind it.
void LineScanner::makeRoom(std::size_t bytes)
{
    const std::size_t kept = m_end - m_begin;
    const std::size_t needed = kept + bytes;
    char *from = m_buffer.get() + m_begin;
    if (needed > m_capacity) {
        const std::size_t capacity = std::max(needed, 2 * m_capacity);
        std::unique_ptr<char[]> larger(new char[capacity]);
        if (kept)
            std::memcpy(larger.get(), from, kept);
        m_buffer = std::move(larger);
        m_capacity = capacity;
    } else if (kept && m_begin) {
        std::memmove(m_buffer.get(), from, kept);
    }
    m_scanned -= m_begin;
    m_begin = 0;
    m_end = kept;
}

LineScanner::Found LineScanner::skipLine()
{
    char *lineEnd = findLineEnd();
    while (!lineEnd) {
        m_begin = m_scanned = m_end; // what was looked through isn't kept
        if (!fill())
            return Found::tooLong;
        lineEnd = findLineEnd();
    }
    m_begin = m_scanned = std::size_t(lineEnd - m_buffer.get()) + 1;
    return Found::tooLong;
}
