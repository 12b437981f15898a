#include "datafiles/reading/filereader.h"

#include "datafiles/reading/blockreader.h"
#include "datafiles/reading/linescanner.h"
#include "datafiles/reading/readahead.h"
#include "log/logger.h"

#include <QFileInfo>

namespace {

std::shared_ptr<Datastore> makeStore()
{
    auto store = std::make_shared<Datastore>();
    store->setLimitRecords(false);
    return store;
}

} // namespace

FileReader::FileReader(const SpectrumMap &, RecordTime begin, RecordTime end)
    : m_logger(QStringLiteral("filereader")), m_state(makeStore(), begin, end)
{
}

FileReader::~FileReader() = default;

int FileReader::readFile(const QString &path)
{
    LineScanner lines;
    if (!lines.open(path)) {
        m_logger.log(Log::Warning, QStringLiteral("Failed to open '%1'").arg(path));
        return 0;
    }
    m_state.order.enter(path);
    BlockReader blocks(QFileInfo(path).fileName(), &m_state, m_logger, &m_statistics);
    m_stretches.push_back({path, lines.file()->id()});
    try {
        readLines(lines, blocks);
    } catch (...) {
        m_state.records.merge(); // what was read until then stays
        throw;
    }
    m_state.records.merge();
    m_stretches.back().readTo(*lines.file(), lines.offset());
    return blocks.rowCount();
}

int FileReader::readFile(const QString &path, ReadAhead &ahead, int index)
{
    if (!ahead.next(index))
        return readFile(path);
    m_state.order.enter(path);
    const int width = knownWidth();
    const std::shared_ptr<const DataFile> file = ahead.dataFile();
    m_stretches.push_back({path, file->id()});
    std::int64_t end = 0;
    BlockReader blocks(QFileInfo(path).fileName(), &m_state, m_logger, &m_statistics);
    try {
        end = placeChunks(ahead, index, blocks);
    } catch (...) {
        m_state.records.merge(); // what was read until then stays
        throw;
    }
    m_state.records.merge();
    m_stretches.back().readTo(*file, end);
    if (knownWidth() > width)
        ahead.setKnown(m_state.makeForecast());
    return blocks.rowCount();
}

/// From the one that comes next to the last one of the file.
std::int64_t FileReader::placeChunks(ReadAhead &ahead, int index, BlockReader &blocks)
{
    std::int64_t placed = 0; // bytes
    for (;;) {
        ParsedChunk &chunk = ahead.present();
        if (!chunk.isWhole) {
            LineScanner lines;
            lines.open(ahead.dataFile(), placed);
            ahead.skipTo(index + 1);
            readLines(lines, blocks);
            return lines.offset();
        }
        const bool isHalfRowAwaited = m_halfRowsAwaited && !chunk.isLastLineEnded();
        if (isHalfRowAwaited)
            chunk.rows.rows.pop_back();
        blocks.placeRows(chunk.rows);
        if (chunk.linesEnd() >= 0)
            blocks.setLineEnded(isHalfRowAwaited || chunk.isLastLineEnded());
        ahead.learn();
        if (chunk.linesEnd() > placed)
            countBytes(chunk.linesEnd() - placed);
        placed = std::max(placed, chunk.linesEnd());
        if (chunk.isLast())
            break;
        ahead.next(index);
    }
    blocks.finish();
    return placed;
}

void FileReader::countBytes(std::int64_t bytes)
{
    m_statistics.bytes += bytes;
    if (m_byteCounter)
        m_byteCounter(bytes);
}

void FileReader::readLines(LineScanner &lines, BlockReader &blocks)
{
    lines.setByteCounter([this](std::int64_t bytes) { countBytes(bytes); });
    QByteArray line;
    for (;;) {
        const LineScanner::Found found = lines.next(&line);
        if (found == LineScanner::Found::end || (m_halfRowsAwaited && !lines.isLineEnded()))
            break;
        if (found == LineScanner::Found::tooLong)
            blocks.skipLine();
        else
            blocks.readLine(line);
        blocks.setLineEnded(lines.isLineEnded());
    }
    blocks.finish();
}

void FileReader::finishRecords()
{
    for (const auto &record : m_state.datastore->records()) {
        m_state.widen(*record, NumberGroups::all());
        // Not while files are read: a later one may tell the mode. Rows of the current format always have told it.
        if (record->opmode < 0 && !m_assumedOpmode.isEmpty())
            record->opmode = m_state.addOpmode(m_assumedOpmode);
    }
}

void FileReader::dropRecords()
{
    m_state.records.clear();
    m_state.datastore->clear();
}
