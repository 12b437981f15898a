#pragma once

#include "datafiles/reading/filereader.h"

#include <QElapsedTimer>
#include <QObject>

#include <atomic>
#include <functional>

class ReadAhead;

/// The task of a read.
struct FileReaderSettings {
    QStringList files; ///< names in the folder, or whole paths; read in case-sensitive order of the names
    QString folder;
    RecordTime beginLimit = earliestRecordTime;
    RecordTime endLimit = latestRecordTime;
    QString windowSetup;          ///< passed on, not used by the read
    QString assumedOpmode;        ///< of old-style records whose files tell none; empty: unknown
    int threads = 0;              ///< that parse rows, the reading one included; 0: one for each processor
    std::size_t chunkBytes = 0;   ///< of a file, that a thread parses at a time; 0: as suits the threads
    bool areHalfRowsAwaited = false; ///< a last line without a line feed stays unread
    std::function<void()> parsed; ///< is called on a parsing thread whenever it has parsed a chunk; may be empty
};

/// Reads a list of files into the store of a FileReader. Its owner moves it to a reading thread and calls run() through
/// the event loop there; signals reach other threads queued. With finished(), the store and all else that the
/// FileReader holds pass to the owner's thread. A file for which there isn't enough memory is skipped; where the
/// records can't be finished for lack of it, the store is empty. The log tells either.
class FileReaderTask : public QObject {
    Q_OBJECT
public:
    FileReaderTask(std::shared_ptr<FileReader> reader, const FileReaderSettings &settings, QObject *parent = nullptr);
    ~FileReaderTask() override;

    const std::shared_ptr<FileReader> &reader() const { return m_reader; }
    const FileReaderSettings &settings() const { return m_settings; }

    /// Ends the read behind the file that is being read. May be called from any thread.
    void setAborted() { m_aborted = true; }

    // ---- to be asked when the read is over
    bool wasCancelled() const { return m_cancelled; } ///< and files were left unread
    int filesRead() const { return m_filesDone; }     ///< skipped ones included
    double seconds() const { return m_seconds; }      ///< of reading

public Q_SLOTS:
    void run();

Q_SIGNALS:
    /// The files done, and the present activity.
    void progress(int count, QString msg);
    /// The bytes done of all bytes of all files, several times a second.
    void bytesProgress(qint64 done, qint64 total);
    void finished();

private:
    void readFiles();
    void readFile(const QString &path, ReadAhead *ahead, int index);
    std::unique_ptr<ReadAhead> startReadAhead(const QStringList &paths) const;
    void finishRecords();
    void tellEnd();
    void complainOfMemory(const QString &text) const;
    void countBytes(std::int64_t bytes);

    Log::Logger m_logger;
    std::shared_ptr<FileReader> m_reader;
    FileReaderSettings m_settings;
    std::atomic<bool> m_aborted{false};
    bool m_cancelled = false;
    int m_filesDone = 0;
    double m_seconds = 0;
    qint64 m_rows = 0;
    qint64 m_bytesDone = 0;
    qint64 m_bytesTotal = 0;
    std::unique_ptr<char[]> m_reserve; ///< given back when there is no memory left, so that this can be told
    QElapsedTimer m_clock;             ///< since the begin of the read
    QElapsedTimer m_sinceEmitted;      ///< since the bytes were last told
};
