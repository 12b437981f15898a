#include "datafiles/reading/filereadertask.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/memoryestimate.h"
#include "datafiles/reading/readahead.h"
#include "log/logger.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <cstdio>
#include <new>

namespace {

constexpr int emitInterval = 100;            // ms
constexpr std::size_t reserveSize = 4 << 20; // bytes

} // namespace

FileReaderTask::FileReaderTask(std::shared_ptr<FileReader> reader, const FileReaderSettings &settings, QObject *parent)
    : QObject(parent), m_logger(QStringLiteral("filereader")), m_reader(std::move(reader)), m_settings(settings)
{
    m_settings.files.sort(Qt::CaseSensitive);
    m_reader->setAssumedOpmode(settings.assumedOpmode);
    m_reader->setHalfRowsAwaited(settings.areHalfRowsAwaited);
}

FileReaderTask::~FileReaderTask()
{
    m_aborted.load(); // orders another thread's last call of setAborted() before what follows
}

void FileReaderTask::run()
{
    m_reserve.reset(new (std::nothrow) char[reserveSize]);
    try {
        readFiles();
        finishRecords();
        tellEnd();
    } catch (const std::bad_alloc &) {
        m_reader->dropRecords();
        complainOfMemory(QStringLiteral("Not enough memory to read files"));
    }
    Q_EMIT finished();
}

void FileReaderTask::readFiles()
{
    m_clock.start();
    m_sinceEmitted.start();
    const QDir folder(m_settings.folder);
    QStringList paths;
    for (const QString &file : qAsConst(m_settings.files)) {
        paths.append(folder.filePath(file));
        m_bytesTotal += QFileInfo(paths.last()).size();
    }
    const QString warning = memoryWarning(m_bytesTotal, availableMemory());
    if (!warning.isEmpty())
        m_logger.log(Log::Warning, warning);
    m_reader->setByteCounter([this](std::int64_t bytes) { countBytes(bytes); });

    const std::unique_ptr<ReadAhead> ahead = startReadAhead(paths);
    for (int i = 0; i < paths.size(); ++i) {
        const QString &path = paths[i];
        try {
            readFile(path, ahead.get(), i);
        } catch (const FileReaderError &error) {
            m_logger.log(Log::Error, QStringLiteral("Skipping %1: %2").arg(path, error.message()));
            ++m_filesDone;
            continue; // with no look at a wish to stop
        } catch (const std::bad_alloc &) {
            m_reserve.reset();
            complainOfMemory(QStringLiteral("Skipping %1: %2").arg(path, QStringLiteral("Not enough memory")));
            m_reserve.reset(new (std::nothrow) char[reserveSize]);
            ++m_filesDone;
            continue;
        }
        if (m_aborted)
            break;
    }
    m_reader->setByteCounter(nullptr);
}

/// Null if one thread is to do it all.
std::unique_ptr<ReadAhead> FileReaderTask::startReadAhead(const QStringList &paths) const
{
    const int threads = m_settings.threads > 0 ? m_settings.threads : std::max(QThread::idealThreadCount(), 1);
    if (threads == 1)
        return nullptr;
    const ReadAhead::Settings settings{threads, m_settings.chunkBytes, m_settings.parsed};
    return std::make_unique<ReadAhead>(paths, settings, m_reader->makeForecast());
}

/// Here rather than on the thread that is to draw them.
void FileReaderTask::finishRecords()
{
    m_reserve.reset(); // the records themselves can be given back from here on
    try {
        m_reader->finishRecords();
        m_reader->datastore()->updateIndexes();
    } catch (const std::bad_alloc &) {
        m_reader->dropRecords();
        complainOfMemory(QStringLiteral("Not enough memory for what was read"));
    }
}

/// On standard error at least.
void FileReaderTask::complainOfMemory(const QString &text) const
{
    try {
        m_logger.log(Log::Error, text);
    } catch (const std::bad_alloc &) {
        std::fputs("Not enough memory\n", stderr);
    }
}

void FileReaderTask::tellEnd()
{
    Q_EMIT bytesProgress(m_bytesDone, std::max(m_bytesTotal, m_bytesDone));
    const qint64 elapsed = m_clock.elapsed();
    m_seconds = double(m_clock.nsecsElapsed()) * 1e-9;
    m_cancelled = m_filesDone < m_settings.files.size();
    if (m_cancelled)
        m_logger.log(Log::Warning, QStringLiteral("Reading was cancelled after %1 of %2 files.")
                                       .arg(QString::number(m_filesDone), QString::number(m_settings.files.size())));
    if (m_rows > 0 && elapsed >= 1)
        m_logger.log(Log::Info,
                     QStringLiteral("Finished reading data (average speed: %1 rows/s).").arg(m_rows * 1000 / elapsed));
    else
        m_logger.log(Log::Info, QStringLiteral("Finished reading data."));
}

void FileReaderTask::readFile(const QString &path, ReadAhead *ahead, int index)
{
    const QString name = QFileInfo(path).fileName();
    const qint64 elapsed = m_clock.elapsed();
    if (m_rows > 0 && elapsed >= 1)
        m_logger.log(
            Log::Info,
            QStringLiteral("Reading %1 (speed: %2 rows/s)").arg(name, QString::number(m_rows * 1000 / elapsed)));
    else
        m_logger.log(Log::Info, QStringLiteral("Reading %1").arg(name));
    Q_EMIT progress(m_filesDone, QStringLiteral("Reading %1").arg(name));
    m_rows += ahead ? m_reader->readFile(path, *ahead, index) : m_reader->readFile(path);
    ++m_filesDone;
}

void FileReaderTask::countBytes(std::int64_t bytes)
{
    m_bytesDone += bytes;
    if (m_sinceEmitted.elapsed() < emitInterval)
        return;
    m_sinceEmitted.restart();
    // A file may grow while it is read.
    Q_EMIT bytesProgress(m_bytesDone, std::max(m_bytesTotal, m_bytesDone));
}
