#pragma once

#include "log/logentry.h"

#include <QDate>
#include <QFile>

namespace Log {

/// Appends entries to one file a day, "yyyyMMdd.log", in a directory that is made when needed. Each opening writes a
/// header. A file that can't be opened or written, or an entry of no valid time, loses the entry and says so on standard
/// error; the next entry is tried again. Used by one thread at a time.
class LogFileWriter {
public:
    explicit LogFileWriter(const QString &directory);
    virtual ~LogFileWriter();

    void write(const Entry &entry);

private:
    bool openFor(QDate date);

    QFile m_file;
    QString m_directory;
    QDate m_date; ///< of the open file; invalid when there is none
};

} // namespace Log
