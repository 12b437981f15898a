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

/// Hands the records of a file over, however its reading ends.
class MergeAtEnd {
public:
    explicit MergeAtEnd(RecordCollector &records) : m_records(records) {}
    ~MergeAtEnd() { m_records.merge(); }
    MergeAtEnd(const MergeAtEnd &) = delete;
    MergeAtEnd &operator=(const MergeAtEnd &) = delete;

private:
    RecordCollector &m_records;
};

} // namespace

FileReader::FileReader(const SpectrumMap &previous, RecordTime begin, RecordTime end)
    : m_logger(QStringLiteral("filereader")), m_state(makeStore(), begin, end)
{
    m_state.spectrumMap = previous;
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
        m_state.bytesRead += bytes;
        if (m_byteCounter)
            m_byteCounter(bytes);
    });
    const MergeAtEnd merge(m_state.records);
    BlockReader blocks(QFileInfo(path).fileName(), &m_state, m_logger, &m_statistics);
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
    return blocks.rowCount();
}

void FileReader::finishRecords()
{
    for (const auto &record : m_state.datastore->records())
        m_state.widen(*record);
}
