#include "datafiles/writing/torntail.h"

#include "util/filecalls.h"
#include "util/filereplacement.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace TornTail {

namespace {

constexpr std::size_t copyPiece = 1 << 16;

QString systemsWords()
{
    return qt_error_string(errno);
}

QString notRegular()
{
    return QStringLiteral("Not a regular file");
}

/// False with errno set.
bool copyBytes(FileCalls &calls, int from, off_t begin, off_t end, int to)
{
    std::vector<char> piece(copyPiece);
    while (begin < end) {
        const ssize_t size =
            calls.pread(from, piece.data(), std::size_t(std::min<off_t>(end - begin, off_t(piece.size()))), begin);
        if (size == 0)
            errno = EIO; // it has become shorter
        if (size <= 0 || !writeAll(calls, to, piece.data(), std::size_t(size)))
            return false;
        begin += size;
    }
    return true;
}

/// The file of ends while one is added.
class EndsFile {
public:
    EndsFile(FileCalls &calls, const QString &name) : m_calls(calls), m_name(name), m_isNew(!QFileInfo::exists(name)) {}
    ~EndsFile()
    {
        if (m_descriptor >= 0)
            m_calls.close(m_descriptor); // what was added is on the disk
    }
    EndsFile(const EndsFile &) = delete;
    EndsFile &operator=(const EndsFile &) = delete;

    /// Made, it has the permissions of the other file.
    QString open(int other)
    {
        struct stat status {};
        if (::fstat(other, &status) != 0)
            return systemsWords();
        // Without waiting for a pipe's other end. The user has named the other file, and a link here might lead
        // anywhere.
        m_descriptor = m_calls.open(QFile::encodeName(m_name).constData(),
                                    O_RDWR | O_CREAT | O_APPEND | O_NONBLOCK | O_NOFOLLOW, status.st_mode & 0666);
        if (m_descriptor < 0 && errno == ELOOP)
            return notRegular();
        if (m_descriptor < 0 || ::fstat(m_descriptor, &status) != 0)
            return systemsWords();
        if (!S_ISREG(status.st_mode))
            return notRegular();
        m_end = status.st_size;
        return {};
    }
    QString add(int descriptor, off_t begin, off_t end)
    {
        char last = '\n';
        bool isThere = false;
        if ((m_end > 0 && m_calls.pread(m_descriptor, &last, 1, m_end - 1) < 0) ||
            !look(descriptor, begin, end, &isThere))
            return systemsWords();
        if (isThere) // from a move that failed behind the copy and couldn't take it back
            return m_calls.fsync(m_descriptor) == 0 ? syncFolder(QFileInfo(m_name).path()) : systemsWords();
        if ((last != '\n' && !writeAll(m_calls, m_descriptor, "\n", 1)) ||
            !copyBytes(m_calls, descriptor, begin, end, m_descriptor) || m_calls.fsync(m_descriptor) != 0)
            return systemsWords();
        return m_isNew ? syncFolder(QFileInfo(m_name).path()) : QString();
    }
    void takeBack()
    {
        if (m_descriptor < 0 || m_end < 0)
            return;
        if (m_isNew)
            m_calls.unlink(QFile::encodeName(m_name).constData());
        else
            m_calls.ftruncate(m_descriptor, m_end);
    }

private:
    /// Whether the file ends in a line of these bytes. False with errno set if that can't be read.
    bool look(int descriptor, off_t begin, off_t end, bool *isThere)
    {
        off_t at = m_end - (end - begin);
        char before = '\n';
        if (at < 0 || (at > 0 && m_calls.pread(m_descriptor, &before, 1, at - 1) < 0))
            return at < 0;
        std::vector<char> here(copyPiece), there(copyPiece);
        while (before == '\n' && begin < end) {
            const auto piece = std::size_t(std::min<off_t>(end - begin, off_t(copyPiece)));
            const ssize_t size = m_calls.pread(m_descriptor, here.data(), piece, at),
                          others = m_calls.pread(descriptor, there.data(), piece, begin);
            if (size < 0 || others < 0)
                return false;
            if (size == 0 || size != others || std::memcmp(here.data(), there.data(), std::size_t(size)) != 0)
                return true;
            at += size;
            begin += size;
        }
        *isThere = before == '\n';
        return true;
    }

    FileCalls &m_calls;
    const QString m_name;
    const bool m_isNew;
    int m_descriptor = -1;
    off_t m_end = -1; ///< as it was found
};

} // namespace

QString fileFor(const QString &name)
{
    return name + QStringLiteral(".torn");
}

QString move(int descriptor, const QString &name, off_t begin, off_t end)
{
    FileCalls &calls = FileCalls::current();
    EndsFile ends(calls, fileFor(name));
    QString reason = ends.open(descriptor);
    if (!reason.isNull())
        return reason;
    reason = ends.add(descriptor, begin, end);
    if (reason.isNull() && ::lseek(descriptor, 0, SEEK_END) != end)
        reason = QStringLiteral("Others wrote into the file");
    if (reason.isNull() && !cutText(calls, descriptor, begin))
        reason = systemsWords();
    if (!reason.isNull())
        ends.takeBack();
    return reason;
}

} // namespace TornTail
