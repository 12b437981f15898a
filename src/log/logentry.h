#pragma once

#include <QDateTime>
#include <QString>

namespace Log {

/// The levels of syslog. They travel as plain ints.
enum Level { Emergency, Alert, Critical, Error, Warning, Notice, Info, Debug };

struct Entry {
    int level = Info; ///< 0..7, or -1 for a Qt message of unknown type
    QString source;   ///< the area, such as "filereader", or "qt.<category>:<file>:<line>" for a Qt message
    QString message;  ///< may span several lines
    QDateTime time;   ///< local time at which the entry was made
    qint64 count = 1; ///< number of equal entries in a row that this one stands for
};

/// "emergency" ... "debug"; "unknown" outside 0..7.
QString levelName(int level);
/// The level of that name, or `fallback`.
int levelFromName(const QString &name, int fallback);
/// The line that an entry prints on the console, with its line feed.
QByteArray consoleLine(const Entry &entry);

/// True if the entry says the same as the one before it, in the same area and on the same day.
bool isRepeat(const Entry &before, const Entry &entry);
} // namespace Log
