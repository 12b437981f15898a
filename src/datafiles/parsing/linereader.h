#pragma once

#include <QByteArray>
#include <QStringList>

/// Understands the data rows of one block of a file.
class LineReader {
public:
    virtual ~LineReader() = default;

    /// Reads one line, without a copy: the bytes are the caller's and last until the next line. True if something was
    /// added to `errors`.
    virtual bool readRow(QByteArray line) = 0;

    QStringList errors; ///< complaints about the last row; the caller empties it
};
