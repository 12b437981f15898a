#pragma once

#include "datafiles/parsing/parsedrows.h"
#include "datafiles/reading/errorrun.h"
#include "datafiles/reading/headerlines.h"

#include <QByteArrayList>

struct ReadStatistics;

/// Takes the lines of one file in order: gathers headers, makes the line reader of each block, hands it the data lines,
/// and logs complaints, folded where they repeat.
class BlockReader {
public:
    BlockReader(const QString &fileName, FileReaderState *state, const Log::Logger &logger, ReadStatistics *statistics);
    ~BlockReader();

    void readLine(const QByteArray &line);
    /// Takes the next lines of the file, of which some were parsed. The rows are used up.
    void placeRows(ParsedRows &rows) { placeRows(rows, 0, rows.rows.size()); }
    /// Takes some of them.
    void placeRows(ParsedRows &rows, std::size_t first, std::size_t count);
    /// Goes on behind that many lines, which were read before: these lead to the block at hand. Logs and counts
    /// nothing.
    void resume(const QByteArrayList &lines, int row);
    /// Counts and complains about a line that was too long to be read.
    void skipLine();
    /// Whether the last line that was taken has a line feed; it has, unless told otherwise.
    void setLineEnded(bool ended) { m_isLineEnded = ended; }
    /// The file's end. A last row without a line feed is complained of.
    void finish();
    int rowCount() const { return m_row; }

private:
    void countLine(std::size_t size);
    void logRun();
    void dropOpenHeader();
    void endHeader(const QByteArray &line);
    void readDataLine(const QByteArray &line);
    void complainOfRow();
    void complain(const QString &message);
    void ignoreLine();

    QString m_fileName;
    FileReaderState *m_state;
    Log::Logger m_logger;
    ReadStatistics *m_statistics;
    int m_row = 0; ///< of the present line, from 1
    bool m_isRow = false; ///< the present line went to a line reader, and is no comment
    bool m_isLineEnded = true;
    bool m_inHeader = false;
    int m_headerLineCount = 0; ///< of the open header
    HeaderLines m_header;
    std::unique_ptr<LineReader> m_reader; ///< of the present block; null before the first and behind a bad header
    ErrorRun m_errorRun;
};
