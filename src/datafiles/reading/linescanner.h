#pragma once

#include "datafiles/reading/datafile.h"

#include <QByteArray>

#include <functional>
#include <limits>

/// Finds the lines of one file in blocks of up to 1 MiB, all in one buffer that grows with the longest line. Carriage
/// returns are left out wherever they stand, as a text device would. The file may grow or shrink while it is read.
class LineScanner {
public:
    static constexpr std::size_t longestLine = std::size_t(256) << 20;

    explicit LineScanner(std::size_t lineLimit = longestLine) : m_lineLimit(lineLimit) {}

    bool open(const QString &path);
    /// Goes on with an open file from an offset on, at which a line begins, as if the file ended at another one.
    void open(std::shared_ptr<const DataFile> file, std::int64_t offset,
              std::int64_t end = std::numeric_limits<std::int64_t>::max());
    /// Null if open() failed.
    const std::shared_ptr<const DataFile> &file() const { return m_file; }
    /// The offset up to which the file was read.
    std::int64_t offset() const { return m_offset; }

    enum class Found { line, tooLong, end };
    /// The next line, without its line feed, as a view that lasts until the next call. A line longer than the limit is
    /// skipped to its end. Throws FileReaderError when the device fails.
    Found next(QByteArray *line);
    /// Whether the last line that was found has a line feed.
    bool isLineEnded() const { return m_isLineEnded; }

    /// Is told the bytes of each block as it is read.
    void setByteCounter(std::function<void(std::int64_t bytes)> counter) { m_counter = std::move(counter); }

private:
    char *findLineEnd();
    bool fill();
    void makeRoom(std::size_t bytes);
    Found skipLine();

    std::shared_ptr<const DataFile> m_file;
    std::int64_t m_offset = 0; ///< up to which the file was read
    std::int64_t m_limit = std::numeric_limits<std::int64_t>::max(); ///< of offsets to read at
    bool m_isLineEnded = true;
    std::size_t m_lineLimit;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
    std::size_t m_begin = 0;   ///< of the line looked for
    std::size_t m_scanned = 0; ///< no line feed from m_begin up to here
    std::size_t m_end = 0;     ///< of the bytes in the buffer
    bool m_atEnd = false;
    std::function<void(std::int64_t)> m_counter;
};
