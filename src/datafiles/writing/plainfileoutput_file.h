#pragma once

#include "datafiles/writing/plainfileoutput_flags.h"
#include "util/recordtime.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class LockedFile;

namespace Spectrometer {

/// A failure that costs a row. The message names the loss.
class FileOutputError {
public:
    explicit FileOutputError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// One kind of day file: the name pattern, the header, and the file of the present day if one is open. The lock is held
/// for as long as the file is open.
class OutputFile {
public:
    /// `pattern` is a path with time codes.
    OutputFile(const QString &pattern, const QList<QByteArray> &header);
    virtual ~OutputFile();

    /// Makes sure that the file of that local time is open and ends in the right header. Throws FileOutputError, with
    /// no file open then.
    void openFor(RecordTime localTime);
    /// Appends the bytes, which end in a line feed, as a whole or not at all: after a failed or short write the file is
    /// cut back to where it ended. Throws FileOutputError.
    void append(const char *bytes, std::size_t size);
    /// After an append: tests the lock, and sets the file's modification time to the present. Throws FileOutputError.
    void settle();
    /// A failure, which may have cost every row of this opening, goes to the callback.
    void close();

    /// The name that openFor was last asked for, though it may have failed; the pattern for a time that has none.
    const QString &wantedName() const { return m_wantedName; }

    qint64 rowCount = 0;                                         ///< of this opening; counted by the caller of append()
    bool matchHeader = true;                                     ///< continue a file whose last header is this one
    FlagIds flagIds;                                             ///< of this opening
    std::function<void(const QString &message)> messageCallback; ///< gets the report of an opening
    /// Told of each closing: the file's name, its rows, and why it failed, which is null if it didn't.
    std::function<void(const QString &name, qint64 rows, const QString &failure)> closeCallback;

protected:
    /// Continues the block that the open file ends in, or appends a new header.
    virtual void checkHeader();

private:
    QString nameFor(RecordTime localTime);
    void openNamed(const QString &name);
    /// Reads the whole file; *endsInLine is false if its last line lacks its line feed. Throws FileOutputError.
    int matchedHeader(bool *endsInLine);

    std::shared_ptr<LockedFile> m_file;
    QString m_currentName;
    QString m_wantedName;
    QString m_pattern;
    QList<QByteArray> m_header;
    QString m_message;
    int m_handle = -1;

    bool m_onlyDayCodes; ///< the pattern gives one name for all times of a day
    std::int64_t m_namedDay = -1;
    QString m_nameOfDay;
};

} // namespace Spectrometer
