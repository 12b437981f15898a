#pragma once

#include "datafiles/writing/heldrows.h"
#include "datafiles/writing/plainfileoutput_flags.h"
#include "util/recordtime.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

#include <sys/types.h>

class LockedFile;

namespace Spectrometer {

class ClosingFiles;
class ContinuedFile;

/// A failure that costs a row. The message names the loss.
class FileOutputError {
public:
    explicit FileOutputError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Others, without the lock, put something into the file that these bytes must not follow, such as a header, since the
/// file was looked at. The bytes were taken back, and no file is open. They can be written behind another openFor().
class OvertakenError : public FileOutputError {
public:
    using FileOutputError::FileOutputError;
};

/// One kind of day file: the name pattern, the header, and the file of the present day if one is open. The lock is held
/// for as long as the file is open.
class OutputFile {
public:
    /// `pattern` is a path with time codes. Files that are closed go to `closing`, which must outlive this object.
    OutputFile(const QString &pattern, const QList<QByteArray> &header, ClosingFiles &closing);
    virtual ~OutputFile();

    /// Makes sure that the file of that local time is open and ends in the right header, whatever others have written.
    /// What was cut off at its end while it was written is moved out of it, and told; where that fails the file stays
    /// as it is. Throws FileOutputError, with no file open then.
    void openFor(RecordTime localTime);
    /// Appends the bytes, which end in a line feed, as a whole or not at all: what was written of them in vain is cut
    /// off again, or becomes a comment where others have written behind it. Throws FileOutputError.
    void append(const char *bytes, std::size_t size);
    /// After an append: tests the lock, and sets the file's modification time to the present. Throws FileOutputError.
    void settle();
    /// A failure may have cost every row of this opening.
    void close();

    /// The name that openFor was last asked for, though it may have failed; the pattern for a time that has none.
    const QString &wantedName() const { return m_wantedName; }

    bool syncAtClose = false;              ///< brings what is written, now or before, to the disk
    qint64 rowCount = 0;                   ///< of this opening; counted by the caller of append()
    qint64 heldCount = 0;                  ///< of this opening, the rows that were passed over; counted by the caller
    bool matchHeader = true;               ///< continue a file whose last header is this one
    PassOver passOver = PassOver::Nothing; ///< where it isn't Nothing, a header is written with the first row
    HeldRows heldRows;                     ///< by the file when it was opened, those that are to be passed over
    FlagIds flagIds;                       ///< of the block that the file ends in
    std::function<void(const QString &message)> messageCallback; ///< gets the report of an opening
    std::function<void(const QString &message)> warningCallback; ///< is told what an opening had to mend

protected:
    /// Continues the block that the open file ends in, or appends a new header.
    virtual void checkHeader();

private:
    QString nameFor(RecordTime localTime);
    void openNamed(const QString &name);
    void moveTail(const ContinuedFile &file);
    void writeHeader();
    void write(const char *bytes, std::size_t size);
    bool mayBegin(off_t begin) const;
    void takeBack(off_t begin, off_t end);
    void giveUp();

    ClosingFiles &m_closing;
    std::shared_ptr<LockedFile> m_file;
    QString m_currentName;
    QString m_wantedName;
    QString m_pattern;
    QList<QByteArray> m_header;
    QByteArray m_missingHeader; ///< to be written before anything else
    QString m_message;
    int m_handle = -1;
    off_t m_end = 0;      ///< of the file, by what was read and written; a line ends there
    bool m_isNew = false; ///< there was none before this opening

    bool m_onlyDayCodes; ///< the pattern gives one name for all times of a day
    std::int64_t m_namedDay = -1;
    QString m_nameOfDay;
};

} // namespace Spectrometer
