#pragma once

#include "datafiles/reading/filereadertask.h"
#include "support/files.h"
#include "support/logcatcher.h"

#include <QTemporaryDir>

#include <memory>

/// Writes a folder of day files, reads it, and tells what came of it.
class Reading : public testing::Test {
protected:
    void write(const QString &name, const QByteArray &text) { writeFile(folder.filePath(name), text); }
    void write(const QString &name, std::initializer_list<const char *> lines)
    {
        QByteArray text;
        for (const char *line : lines)
            text.append(line).append('\n');
        write(name, text);
    }
    /// Reads all files of the folder.
    void read() { read(QDir(folder.path()).entryList(QDir::Files), folder.path()); }
    void read(const QStringList &files, const QString &from)
    {
        log = std::make_unique<LogCatcher>();
        reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), beginLimit, endLimit);
        FileReaderSettings settings{files, from, beginLimit, endLimit, QString(), assumedOpmode};
        settings.threads = threads;
        settings.chunkBytes = chunkBytes;
        settings.parsed = parsed;
        FileReaderTask task(reader, settings);
        if (started)
            started(task);
        task.run();
        filesRead = task.filesRead();
        reader->finishRecords();
    }
    int recordCount() const { return reader->datastore()->size(); }
    const Record &record(int index) const { return *reader->datastore()->at(index); }
    QString modeOf(int index) const { return reader->metadata()->opmodeName(record(index).opmode); }
    QStringList messagesOf(int index) const
    {
        QStringList texts;
        for (const auto &flag : record(index).flags)
            texts.append(flag->message);
        return texts;
    }
    QStringList complaints() const { return log->complaints(); }
    qint64 ignoredRows() const { return reader->statistics().ignoredRows; }

    QTemporaryDir folder;
    RecordTime beginLimit = earliestRecordTime;
    RecordTime endLimit = latestRecordTime;
    QString assumedOpmode;
    int threads = 0;
    std::size_t chunkBytes = 0;
    std::function<void()> parsed;
    std::function<void(FileReaderTask &)> started; ///< is called with the task before it runs
    int filesRead = 0;
    std::shared_ptr<FileReader> reader;
    std::unique_ptr<LogCatcher> log;
};
