#pragma once

#include <QString>

/// How far a read has come.
struct ReadProgress {
    int filesDone = 0;
    int fileCount = 0;
    QString message; ///< the present activity
    qint64 bytesDone = 0;
    qint64 bytesTotal = 0;
};

/// The message with the number of the file at hand, and the per cent of all bytes: "Reading a.records (3 of 12), 25 %".
QString progressText(const ReadProgress &progress);
