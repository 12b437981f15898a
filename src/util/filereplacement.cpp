#include "util/filereplacement.h"

#include "util/filecalls.h"
#include "util/temporaryfile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int mostLinks = 40; // as many as the system follows
constexpr std::size_t copyPiece = 1 << 16;
constexpr mode_t permissionBits = 0777;
constexpr mode_t newFile = 0666; // less what the user's mask takes

/// Up to and with the last slash; empty for a bare name.
QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

/// Where a path leads, which need not exist, link by link. False with errno set.
bool followLinks(QByteArray *path)
{
    for (int links = 0; links < mostLinks; ++links) {
        char link[4096];
        const ssize_t size = ::readlink(path->constData(), link, sizeof link);
        if (size < 0)
            return errno == EINVAL || errno == ENOENT; // no link, or nothing
        const QByteArray next(link, int(size));
        *path = next.startsWith('/') ? next : folderOf(*path) + next;
    }
    errno = ELOOP;
    return false;
}

QString textOf(int systemError)
{
    return qt_error_string(systemError);
}

/// Null for an ordinary file, otherwise why it can't be used as one.
QString kindFault(const struct stat &status)
{
    if (S_ISREG(status.st_mode))
        return QString();
    return S_ISDIR(status.st_mode) ? textOf(EISDIR) : QStringLiteral("Not a regular file");
}

/// Opens, syncs and closes. Zero, or the error of the first step that failed.
int syncPath(const QByteArray &path, int flags)
{
    FileCalls &calls = FileCalls::current();
    const int descriptor = calls.open(path.constData(), flags);
    if (descriptor < 0)
        return errno;
    const int error = calls.fsync(descriptor) == 0 || cannotSync(errno) ? 0 : errno;
    return calls.close(descriptor) == 0 || error != 0 ? error : errno;
}

QString syncFolderNamed(const QByteArray &folder)
{
    const int error = syncPath(folder.isEmpty() ? QByteArray(".") : folder, O_RDONLY | O_DIRECTORY);
    return error == 0 || error == EACCES ? QString() : textOf(error);
}

} // namespace

FileReplacement::FileReplacement(const QString &path, ExistingFile existing)
    : m_calls(FileCalls::current()), m_existing(existing), m_target(QFile::encodeName(path))
{
    begin();
}

FileReplacement::~FileReplacement()
{
    cancel();
}

bool FileReplacement::fail(int systemError)
{
    return fail(textOf(systemError));
}

bool FileReplacement::fail(const QString &reason)
{
    m_error = reason;
    cancel();
    return false;
}

bool FileReplacement::begin()
{
    struct stat old {};
    if (m_existing == ExistingFile::Kept) {
        if (::lstat(m_target.constData(), &old) == 0)
            return fail(EEXIST);
        return openTemporary(newFile);
    }
    if (!followLinks(&m_target))
        return fail(errno);
    m_replacesFile = ::stat(m_target.constData(), &old) == 0;
    if (!m_replacesFile)
        return errno == ENOENT ? openTemporary(newFile) : fail(errno);
    const QString fault = kindFault(old);
    if (!fault.isNull())
        return fail(fault);
    if (::faccessat(AT_FDCWD, m_target.constData(), W_OK, AT_EACCESS) != 0)
        return fail(errno);
    return openTemporary(old.st_mode & 0777) && takeAttributes(old);
}

bool FileReplacement::openTemporary(mode_t mode)
{
    m_descriptor = createBeside(m_calls, m_target, "tmp", mode, &m_temporary);
    return m_descriptor >= 0 || fail(errno);
}

bool FileReplacement::takeAttributes(const struct stat &other)
{
    return m_descriptor >= 0 && (::giveAttributes(m_calls, other, m_descriptor) || fail(errno));
}

bool FileReplacement::write(const char *bytes, std::size_t size)
{
    if (m_descriptor < 0)
        return false;
    return writeAll(m_calls, m_descriptor, bytes, size) || fail(errno);
}

bool FileReplacement::commit()
{
    if (m_descriptor < 0)
        return false;
    if (m_calls.fsync(m_descriptor) != 0 && !cannotSync(errno))
        return fail(errno);
    const int closed = m_calls.close(std::exchange(m_descriptor, -1));
    if (closed != 0)
        return fail(errno);
    const int moved = m_existing == ExistingFile::Kept
                          ? m_calls.renameToFree(m_temporary.constData(), m_target.constData())
                          : m_calls.rename(m_temporary.constData(), m_target.constData());
    if (moved != 0)
        return fail(errno);
    m_temporary.clear();
    const QString reason = syncFolderNamed(folderOf(m_target));
    if (!reason.isNull())
        m_error = QStringLiteral("it stands, but might be lost in a power failure: %1").arg(reason);
    return reason.isNull();
}

void FileReplacement::cancel()
{
    if (m_descriptor >= 0)
        m_calls.close(std::exchange(m_descriptor, -1));
    if (!m_temporary.isNull())
        m_calls.unlink(m_temporary.constData());
    m_temporary.clear();
}

QString replaceFile(const QString &path, const QByteArray &bytes, ExistingFile existing)
{
    FileReplacement file(path, existing);
    file.write(bytes);
    file.commit();
    return file.error();
}

QString copyFile(const QString &from, const QString &to, ExistingFile existing)
{
    FileCalls &calls = FileCalls::current();
    // Without waiting for a pipe's other end, which the next look refuses.
    const int source = calls.open(QFile::encodeName(from).constData(), O_RDONLY | O_NONBLOCK);
    if (source < 0)
        return textOf(errno);
    struct stat status {};
    QString reason = ::fstat(source, &status) == 0 ? kindFault(status) : textOf(errno);
    if (reason.isNull()) {
        FileReplacement file(to, existing);
        if (!file.replacesFile())
            file.takeAttributes(status);
        std::vector<char> piece(copyPiece);
        ssize_t size = 0;
        while ((size = calls.read(source, piece.data(), piece.size())) > 0) {
            if (!file.write(piece.data(), std::size_t(size)))
                break;
        }
        if (size < 0)
            reason = textOf(errno);
        else if (!file.commit())
            reason = file.error();
    }
    calls.close(source); // nothing was written through it
    return reason;
}

QString moveFile(const QString &from, const QString &to, ExistingFile existing)
{
    const QString reason = syncFile(from);
    return reason.isNull() ? moveSyncedFile(from, to, existing) : reason;
}

QString moveSyncedFile(const QString &from, const QString &to, ExistingFile existing)
{
    FileCalls &calls = FileCalls::current();
    const QByteArray source = QFile::encodeName(from);
    QByteArray target = QFile::encodeName(to);
    const bool keep = existing == ExistingFile::Kept;
    if (!keep && !followLinks(&target))
        return textOf(errno);
    const int moved = keep ? calls.renameToFree(source.constData(), target.constData())
                           : calls.rename(source.constData(), target.constData());
    if (moved == 0)
        return QString();
    if (errno != EXDEV)
        return textOf(errno);
    const QString fault = copyFile(from, to, existing);
    if (fault.isNull() && calls.unlink(source.constData()) != 0)
        return textOf(errno);
    return fault;
}

bool giveAttributes(FileCalls &calls, const struct stat &from, int to)
{
    // Few users may give files away; a group of one's own can be given. The permissions come last, since a new owner
    // takes some of them.
    const bool given = ::fchown(to, from.st_uid, from.st_gid) == 0 || ::fchown(to, uid_t(-1), from.st_gid) == 0;
    Q_UNUSED(given)
    return calls.fchmod(to, from.st_mode & permissionBits) == 0;
}

QString giveAttributes(const QString &from, const QString &to)
{
    FileCalls &calls = FileCalls::current();
    struct stat status {};
    if (::stat(QFile::encodeName(from).constData(), &status) != 0)
        return textOf(errno);
    const int descriptor = calls.open(QFile::encodeName(to).constData(), O_RDONLY);
    if (descriptor < 0)
        return textOf(errno);
    const QString reason = giveAttributes(calls, status, descriptor) ? QString() : textOf(errno);
    calls.close(descriptor); // nothing was written through it
    return reason;
}

QString syncFile(const QString &path)
{
    const int error = syncPath(QFile::encodeName(path), O_RDONLY);
    return error == 0 ? QString() : textOf(error);
}

QString syncFolder(const QString &folder)
{
    return syncFolderNamed(QFile::encodeName(folder));
}
