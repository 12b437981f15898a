#include "datafiles/writing/continuedfile.h"

#include "util/filecalls.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace Spectrometer {

namespace {

constexpr std::size_t readPiece = 1 << 16;
constexpr int longestLine = 64 << 20; // a longer one is neither a flag nor a row of ours

} // namespace

ContinuedFile::ContinuedFile(const QList<QByteArray> &header, PassOver passOver, HeldRows &held)
    : m_header(header), m_passOver(passOver), m_held(held), m_match(header), m_matchBefore(header)
{
    for (const QByteArray &line : header)
        m_longestHeaderLine = std::max(m_longestHeaderLine, line.size());
}

bool ContinuedFile::read(FileCalls &calls, int descriptor)
{
    std::vector<char> piece(readPiece);
    ssize_t size = ::lseek(descriptor, 0, SEEK_SET) < 0 ? -1 : 0;
    while (size >= 0 && (size = calls.read(descriptor, piece.data(), piece.size())) > 0) {
        const char *begin = piece.data(), *const end = begin + size;
        while (const void *found = std::memchr(begin, '\n', std::size_t(end - begin))) {
            const auto *const feed = static_cast<const char *>(found);
            extendLine(begin, feed);
            begin = feed + 1;
            endLine(m_size + (begin - piece.data()));
        }
        extendLine(begin, end);
        m_size += size;
    }
    return size == 0;
}

void ContinuedFile::extendLine(const char *begin, const char *end)
{
    static const QByteArray flag = QByteArrayLiteral("# flag ");
    const bool isWanted = m_line.startsWith(flag) || (m_passOver != PassOver::Nothing && !m_line.startsWith('#'));
    // A line that is longer than all header lines can't match, however long it is.
    const int limit = isWanted || m_line.size() < flag.size() ? longestLine : m_longestHeaderLine + 2;
    m_line.append(begin, int(std::min<std::ptrdiff_t>(end - begin, std::max(limit - m_line.size(), 0))));
}

void ContinuedFile::endLine(off_t end)
{
    if (m_line.endsWith('\r'))
        m_line.chop(1);
    const bool isComment = m_line.startsWith('#');
    if (m_line.startsWith("# Quilvane") && !m_header.last().startsWith('#')) // such kinds of files have no column rows
        openHeader();
    m_match.addLine(m_line);
    if (m_inHeader && !isComment) {
        m_inHeader = false;
        m_inBlock = true;
        m_flagsColumn = m_line.endsWith("\tflags");
    } else if (!m_inHeader && isComment) {
        m_flags.readDefinition(m_line);
    } else if (m_inBlock && m_passOver != PassOver::Nothing && !isComment) {
        holdRow();
    }
    m_linesEnd = end;
    m_line.resize(0);
}

/// Of headers without rows between them the first one counts as the begin.
void ContinuedFile::openHeader()
{
    if (m_inHeader)
        return;
    m_inHeader = true;
    m_inBlock = false;
    m_headerBegin = m_linesEnd;
    m_matchBefore = m_match;
    m_flagsBefore = std::move(m_flags);
    m_flags.clear();
}

void ContinuedFile::holdRow()
{
    if (!m_match.isComplete() && m_passOver != PassOver::RowsOfAnyHeader)
        return;
    // A row that lacks fields is passed over by readers, too.
    if (m_match.isComplete() && m_line.count('\t') < m_header.last().count('\t'))
        return;
    QByteArrayList flags;
    if (m_flagsColumn) {
        const int tab = m_line.lastIndexOf('\t');
        flags = m_flags.textsOf(m_line.mid(tab + 1));
        m_line.truncate(std::max(tab, 0));
    }
    m_held.add(m_line, flags);
}

} // namespace Spectrometer
