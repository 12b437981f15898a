#include "datafiles/reading/filereader.h"

#include "datafiles/reading/blockreader.h"
#include "datafiles/reading/linescanner.h"
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
    lines.setByteCounter([this](std::int64_t bytes) {
        m_statistics.bytes += bytes;
        m_state.budget.addBytesRead(bytes);
        if (m_byteCounter)
            m_byteCounter(bytes);
    });
    BlockReader blocks(QFileInfo(path).fileName(), &m_state, m_logger, &m_statistics);
    try {
        readLines(lines, blocks);
    } catch (...) {
        m_state.records.merge(); // what was read until then stays
        throw;
    }
    m_state.records.merge();
    return blocks.rowCount();
}

void FileReader::readLines(LineScanner &lines, BlockReader &blocks)
{
    QByteArray line;
    for (;;) {
        const LineScanner::Found found = lines.next(&line);
        if (found == LineScanner::Found::end)
            break;
        if (found == LineScanner::Found::tooLong)
            blocks.skipLine();
        else
            blocks.readLine(line);
    }
    blocks.finish();
}

void FileReader::finishRecords()
{
    for (const auto &record : m_state.datastore->records()) {
        m_state.widen(*record);
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
