#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

class FileCalls;
struct stat;

/// The fate of a file that stands in the place of the new one.
enum class ExistingFile {
    Replaced, ///< by the new file, which gets its permissions, and its owner and group as far as the user may give them
    Kept      ///< writing is an error then; a link counts as a file, wherever it leads
};

/// Writes a file that is whole or absent. The bytes go into a temporary file beside it, "NAME.tmp", or
/// "NAME.abcdef.tmp" with six random letters where that one is taken, which gets the name once all of it is on the
/// disk. At any other end, the program's or the computer's included, the old file stands as it was.
///
/// Every step is checked, and the first failure ends the work: later calls do nothing and return false, error() keeps
/// the reason, and the temporary file is removed. So a caller may look at commit() alone.
///
///     FileReplacement file(path);
///     for (const QByteArray &row : rows)
///         file.write(row);
///     if (!file.commit())
///         tell(path, file.error());
///
/// A symbolic link is followed: the file that it leads to is replaced, and made where it leads to none. Other names of
/// a replaced file (hard links) keep the old content. A file that the user may not write to isn't replaced, nor is
/// anything but an ordinary file. The folder must exist. One thread at a time.
class FileReplacement {
public:
    /// Begins: error() tells if it can't.
    explicit FileReplacement(const QString &path, ExistingFile existing = ExistingFile::Replaced);
    ~FileReplacement(); ///< cancels
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    /// Appends. The bytes go to the system at once: small pieces are slow.
    bool write(const char *bytes, std::size_t size);
    bool write(const QByteArray &bytes) { return write(bytes.constData(), std::size_t(bytes.size())); }

    /// Gives the file the permissions of another, and owner and group as far as the user may give them.
    bool takeAttributes(const struct stat &other);

    /// Puts the file in its place. If it fails the old one stands, with one exception: where the list of the folder
    /// could not be brought to the disk, the new file stands and might be lost in a power failure; error() says so.
    bool commit();
    /// Gives up: the old file stays. Nothing happens after commit().
    void cancel();

    /// The reason of the failure, in the system's words, which don't name the file. Null as long as nothing did.
    const QString &error() const { return m_error; }
    /// Whether there was a file to replace when it began.
    bool replacesFile() const { return m_replacesFile; }

private:
    bool begin();
    bool openTemporary(mode_t mode);
    bool fail(int systemError);
    bool fail(const QString &reason);

    FileCalls &m_calls;
    ExistingFile m_existing;
    QByteArray m_target; ///< where the links lead
    QByteArray m_temporary;
    int m_descriptor = -1;
    bool m_replacesFile = false;
    QString m_error;
};

// The same in one call. The result is null, or the reason of the failure. A file system that can't tell when something
// is on the disk is none.

/// A file that holds these bytes.
QString replaceFile(const QString &path, const QByteArray &bytes, ExistingFile existing = ExistingFile::Replaced);
/// A copy. One that replaces no file gets permissions, owner and group of `from`.
QString copyFile(const QString &from, const QString &to, ExistingFile existing = ExistingFile::Replaced);
/// Moves an ordinary file that is complete, by copying where the places are on different file systems. It keeps
/// its permissions. The bytes are on the disk before the name is; the folders' lists need not be, see syncFolder().
QString moveFile(const QString &from, const QString &to, ExistingFile existing = ExistingFile::Replaced);
/// The same for a file whose bytes are on the disk already.
QString moveSyncedFile(const QString &from, const QString &to, ExistingFile existing = ExistingFile::Replaced);

/// Gives a file the permissions of another one, and its owner and group as far as the user may give them.
QString giveAttributes(const QString &from, const QString &to);
/// The same for an open file. False with errno set.
bool giveAttributes(FileCalls &calls, const struct stat &from, int to);
/// Waits until the bytes of that file are on the disk.
QString syncFile(const QString &path);
/// Waits until the list of that folder is on the disk: names that were given, taken or moved. A folder that the
/// user may not read is no failure.
QString syncFolder(const QString &folder);
