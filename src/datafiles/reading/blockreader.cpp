#include "datafiles/reading/blockreader.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/readstatistics.h"

BlockReader::BlockReader(const QString &fileName, FileReaderState *state, const Log::Logger &logger,
                         ReadStatistics *statistics)
    : m_fileName(fileName), m_state(state), m_logger(logger), m_statistics(statistics), m_errorRun(fileName)
{
}

BlockReader::~BlockReader() = default;

void BlockReader::countLine(std::size_t size)
{
    ++m_row;
    m_isRow = false;
    ++m_statistics->rows;
    m_state->budget.addBytesRead(std::int64_t(size) + 1);
}

void BlockReader::readLine(const QByteArray &line)
{
    countLine(std::size_t(line.size()));
    if (line.startsWith('#')) {
        logRun();
        if (HeaderLines::opens(line)) {
            dropOpenHeader();
            m_header.start(line, m_row);
            m_inHeader = true;
            m_headerLineCount = 1;
            return;
        }
        if (m_inHeader) {
            m_header.add(line);
            ++m_headerLineCount;
            return;
        }
    } else if (m_inHeader) {
        endHeader(line);
        return;
    }
    readDataLine(line);
}

void BlockReader::logRun()
{
    if (m_errorRun.flush())
        m_logger.log(Log::Warning, m_errorRun.text());
}

/// The line is the header's last one, whether or not it is a column row.
void BlockReader::endHeader(const QByteArray &line)
{
    m_reader.reset();
    m_inHeader = false;
    QByteArray columnRow;
    if (HeaderLines::isColumnRow(line)) {
        columnRow = line;
    } else {
        m_logger.log(Log::Warning,
                     QStringLiteral("File %1, row %2: Header ended unexpectedly. Trying to make sense of it anyway.")
                         .arg(m_fileName, QString::number(m_row)));
        ignoreLine();
    }
    try {
        m_reader = m_header.makeReader(columnRow, m_state);
    } catch (const FileReaderError &error) {
        m_state->order.noteBadHeader();
        m_logger.log(
            Log::Warning,
            QStringLiteral("File %1, header at rows %2 to %3: %4. Subsequent data rows will not be read.")
                .arg(m_fileName, QString::number(m_header.firstRow()), QString::number(m_row), error.message()));
    }
    m_header = HeaderLines();
}

void BlockReader::readDataLine(const QByteArray &line)
{
    if (!m_reader) {
        ignoreLine();
        return;
    }
    m_isRow = !line.startsWith('#');
    if (m_reader->readRow(line))
        complainOfRow();
}

void BlockReader::resume(const QByteArrayList &lines, int row)
{
    const Log::Silence silence;
    ReadStatistics uncounted;
    ReadStatistics *const counted = std::exchange(m_statistics, &uncounted);
    for (const QByteArray &line : lines)
        readLine(line);
    m_statistics = counted;
    m_errorRun = ErrorRun(m_fileName);
    m_row = row;
}

void BlockReader::placeRows(ParsedRows &rows, std::size_t first, std::size_t count)
{
    const LineReader *parser = nullptr, *reader = nullptr; // the last ones that were compared
    bool fit = false;
    for (std::size_t i = first; i < first + count; ++i) {
        ParsedRow &row = rows.rows[i];
        if (row.parser && m_reader && (row.parser != parser || m_reader.get() != reader)) {
            parser = row.parser;
            reader = m_reader.get();
            fit = m_state->canTake(parser->layout()) && parser->layout().columns == reader->layout().columns;
        }
        if (!row.parser || !m_reader || !fit || m_inHeader) {
            readLine(bytesOf(row.line));
            continue;
        }
        countLine(row.line.size());
        m_isRow = true;
        if (!row.isOutside && m_reader->placeRow(row, rows))
            complainOfRow();
    }
}

void BlockReader::complainOfRow()
{
    complain(m_reader->errors.join(QStringLiteral("; ")));
    m_reader->errors.clear();
}

void BlockReader::complain(const QString &message)
{
    if (m_errorRun.extend(message, m_row))
        return;
    logRun();
    m_errorRun.begin(message, m_row);
}

void BlockReader::ignoreLine()
{
    ++m_statistics->ignoredRows;
}

void BlockReader::skipLine()
{
    countLine(0);
    ignoreLine();
    complain(QStringLiteral("Line too long"));
}

/// A header that never comes to its end is dropped without a word, but its lines are counted.
void BlockReader::dropOpenHeader()
{
    if (m_inHeader)
        m_statistics->ignoredRows += m_headerLineCount;
}

void BlockReader::finish()
{
    logRun();
    dropOpenHeader();
    if (m_isRow && !m_isLineEnded)
        m_logger.log(Log::Warning,
                     QStringLiteral("The last row of '%1' has no line end and may be cut off").arg(m_fileName));
}
