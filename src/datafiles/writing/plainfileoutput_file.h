#pragma once

#include "datafiles/writing/heldrows.h"
#include "datafiles/writing/plainfileoutput_flags.h"
#include "util/fileid.h"
#include "util/recordtime.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVarLengthArray>

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
///
/// Before each row, at the closing and at a later opening the file is looked at: whether its name still leads to it,
/// and whether the last row that was written stands where it was written. Otherwise its rows count as lost.
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
    /// After an append: tests the lock, and sets the file's modification time to the present. Throws FileOutputError,
    /// which costs no row.
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
    /// Is told that the rows of this object in that file, those of earlier openings too, were lost by others' doing.
    std::function<void(const QString &name, const QString &message)> lossCallback;
    /// Unless it is empty, a file that this object didn't make is never continued: the error has these words then, with
    /// the name for %1.
    QString refusalOfExisting;

protected:
    /// Continues the block that the open file ends in, or appends a new header.
    virtual void checkHeader();

private:
    /// Bytes that were written at a time, the first of which are kept to know them again.
    struct Piece {
        off_t begin = 0;
        off_t end = 0;
        QByteArray first = {};
    };
    using Pieces = QVarLengthArray<Piece, 2>; ///< with others' bytes between them

    QString nameFor(RecordTime localTime);
    void openNamed(const QString &name);
    int openDescriptor(const QString &name, bool isThere);
    bool isAsLeft() const;
    bool stands(const Piece &piece, off_t size) const;
    QString lossSinceTheLastLook();
    void moveTail(const ContinuedFile &file);
    void writeHeader();
    void write(const char *bytes, std::size_t size);
    bool mayBegin(const Piece &piece) const;
    bool takeBack(const Pieces &pieces, bool isWhole);
    bool commentOut(const Piece &piece);
    void removeIfMadeInVain(int handle, const QString &name);
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
    bool m_isNew = false; ///< this opening has made it
    FileId m_id;
    Piece m_last;                  ///< of the open file
    QHash<QString, Piece> m_known; ///< the same of all files that this object opened

    bool m_onlyDayCodes; ///< the pattern gives one name for all times of a day
    std::int64_t m_namedDay = -1;
    QString m_nameOfDay;
};

} // namespace Spectrometer
