#include "fuzz.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/filereader.h"
#include "datafiles/reading/readahead.h"

#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

namespace {

QString complaints;

/// Complaints are gathered, and nothing is told.
void catchLog()
{
    static const bool once = [] {
        Log::RootLogger::instance().setFilter([](const Log::Entry &entry) {
            if (entry.level <= Log::Warning)
                complaints += entry.message + '\n';
            return false;
        });
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        return true;
    }();
    (void)once;
}

/// A file that lives in memory alone.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t *data, std::size_t size) : m_descriptor(memfd_create("dayfile", 0))
    {
        require(m_descriptor >= 0 && write(m_descriptor, data, size) == ssize_t(size), "the bytes are in the file");
    }
    ~MemoryFile() { close(m_descriptor); }
    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};

void checkRecords(const FileReader &reader, std::size_t bytes)
{
    const auto &records = reader.datastore()->records();
    const auto &metadata = *reader.metadata();
    std::size_t held = 0;
    RecordTime last = earliestRecordTime;
    for (const auto &record : records) {
        require(last < record->beginTime, "records stand in order, each moment once");
        last = record->beginTime;
        require(!isMissing(record->endTime), "each record has an end");
        require(record->opmode >= -1 && record->opmode < metadata.opmodes.size(), "modes are known");
        require(record->currents.size() == std::size_t(metadata.totalElectrometers) &&
                    record->voltages.size() == record->currents.size() &&
                    record->rawCurrents.size() == record->currents.size() &&
                    record->currentVariances.size() == record->currents.size() &&
                    record->variables.size() == std::size_t(metadata.variableCount),
                "records are as wide as what is known");
        held += sizeof(double) * (4 * record->currents.size() + record->variables.size());
        held += record->flags.capacity() * sizeof record->flags[0];
        for (const auto &spectrum : record->spectra) {
            require(spectrum->isValid(), "spectra fit their descriptions");
            held += sizeof *spectrum + 2 * sizeof(double) * spectrum->concentrations.size();
        }
    }
    require(held <= (std::size_t(64) << 20) + 1024 * records.size() + 10 * bytes, "memory is in proportion");
}

/// Reads the file, and then once more: everything is known, flags and spectra double. With a `chunkBytes` by two
/// threads.
QString read(FileReader &reader, const QString &path, std::size_t chunkBytes = 0)
{
    complaints.clear();
    std::unique_ptr<ReadAhead> ahead;
    if (chunkBytes > 0)
        ahead = std::make_unique<ReadAhead>(QStringList{path, path}, ReadAhead::Settings{2, chunkBytes, nullptr},
                                            reader.makeForecast());
    try {
        for (int i = 0; i < 2; ++i)
            ahead ? reader.readFile(path, *ahead, i) : reader.readFile(path);
    } catch (const FileReaderError &) {
    }
    reader.finishRecords();
    return complaints + Dump(reader).text();
}

} // namespace

/// The bytes are a day file, with all its headers and rows.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    catchLog();
    const MemoryFile file(data, size);
    FileReader reader({}, earliestRecordTime, latestRecordTime), other({}, earliestRecordTime, latestRecordTime);
    const QString found = read(reader, file.path());
    checkRecords(reader, 2 * size);
    require(reader.statistics().bytes == std::int64_t(2 * size), "all bytes are looked at");
    require(reader.statistics().ignoredRows <= reader.statistics().rows, "no line is lost twice");
    require(read(other, file.path(), 50 + size / 5) == found, "two threads find what one finds");
    return 0;
}
