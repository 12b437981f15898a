#pragma once

#include "fuzzfile.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/filereader.h"
#include "datafiles/reading/readahead.h"

/// A day file that is read once, or more often in a row: the second time everything is known, and flags and spectra
/// double. One lives at a time.
class DayFileRead {
public:
    DayFileRead(const QString &path, int times)
    {
        read(times, [&](int) { m_reader.readFile(path); });
    }
    /// In chunks, which the calling thread parses with as many more as make up `threads`.
    DayFileRead(const QString &path, int times, int threads, std::size_t chunkBytes)
    {
        const QStringList paths = QVector<QString>(times, path).toList();
        ReadAhead ahead(paths, {threads, chunkBytes, nullptr}, m_reader.makeForecast());
        read(times, [&](int file) { m_reader.readFile(path, ahead, file); });
    }

    const FileReader &reader() const { return m_reader; }
    /// What was found and complained of.
    QString text() const { return complaints() + Dump(m_reader).text(); }

private:
    template<typename ReadFile>
    void read(int times, const ReadFile &readFile)
    {
        catchLog();
        complaints().clear();
        try {
            for (int file = 0; file < times; ++file)
                readFile(file);
        } catch (const FileReaderError &) {
        }
        m_reader.finishRecords();
    }

    static QString &complaints()
    {
        static QString texts;
        return texts;
    }
    static void catchLog()
    {
        static const bool once = [] {
            Log::RootLogger::instance().setFilter([](const Log::Entry &entry) {
                if (entry.level <= Log::Warning)
                    complaints() += entry.message + '\n';
                return false;
            });
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
            return true;
        }();
        (void)once;
    }

    FileReader m_reader{{}, earliestRecordTime, latestRecordTime};
};
