#include "datafiles/reading/headerlines.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/parsing/newlinereader.h"
#include "datafiles/parsing/oldlinereader.h"

namespace {

constexpr int longestHeader = 16 << 20;
constexpr int mostOldComments = 1000; // that are told on the debug output

bool isOldFormat(const QByteArray &line)
{
    return line.startsWith("#Only records") || line.startsWith("#All measured");
}

bool isNewFormat(const QByteArray &line)
{
    return line.startsWith("# Quilvane");
}

/// The YAML text: each line without the character that marks it as a header line.
QByteArray withoutMarks(const QByteArray &lines)
{
    QByteArray text;
    text.reserve(lines.size());
    for (int begin = 0; begin < lines.size();) {
        const int end = lines.indexOf('\n', begin) + 1;
        text.append(lines.constData() + begin + 1, end - begin - 1);
        begin = end;
    }
    return text;
}

} // namespace

bool HeaderLines::opens(const QByteArray &line)
{
    return isNewFormat(line) || isOldFormat(line);
}

bool HeaderLines::isColumnRow(const QByteArray &line)
{
    return line.startsWith("begintime") || line.startsWith("begin_time");
}

void HeaderLines::start(const QByteArray &line, int row)
{
    m_firstRow = row;
    m_rest = QByteArray();
    m_tooLong = line.size() > longestHeader;
    m_first = m_tooLong ? QByteArray() : QByteArray(line.constData(), line.size());
}

void HeaderLines::add(const QByteArray &line)
{
    m_tooLong = m_tooLong || line.size() > longestHeader - m_first.size() - m_rest.size();
    if (m_tooLong) {
        m_rest = QByteArray();
        return;
    }
    m_rest.append(line).append('\n');
}

bool HeaderLines::isSame(const HeaderLines &other) const
{
    constexpr int longest = 64 << 10;
    return !m_tooLong && !other.m_tooLong && m_rest.size() < longest && m_first == other.m_first &&
           m_rest == other.m_rest;
}

std::unique_ptr<LineReader> HeaderLines::makeReader(const QByteArray &columnRow, FileReaderState *state) const
{
    if (m_tooLong || columnRow.size() > longestHeader)
        throw FileReaderError(QStringLiteral("Header too long"));
    if (isOldFormat(m_first))
        return makeOldReader(columnRow, state);
    if (isNewFormat(m_first))
        return std::make_unique<NewLineReader>(m_first, columnRow, withoutMarks(m_rest), state);
    throw FileReaderError(QStringLiteral("Unexpected header data"));
}

std::unique_ptr<LineReader> HeaderLines::makeOldReader(const QByteArray &columnRow, FileReaderState *state) const
{
    QList<QByteArray> lines;
    int comments = 0;
    for (int begin = 0; begin < m_rest.size();) {
        const int end = m_rest.indexOf('\n', begin) + 1;
        // Without a copy at first: a header may have millions of comments, and each kept costs many times its bytes.
        const QByteArray line = QByteArray::fromRawData(m_rest.constData() + begin, end - begin);
        if (OldLineHeader::isKnown(line) || comments++ < mostOldComments)
            lines.append(line.trimmed());
        begin = end;
    }
    if (comments > mostOldComments)
        qDebug("%d more unknown lines", comments - mostOldComments);
    lines.append(columnRow.trimmed());
    return std::make_unique<OldLineReader>(lines, state);
}
