#include "datafiles/writing/commentwriting.h"

#include "records/commentlimits.h"
#include "util/filecalls.h"
#include "util/fileid.h"
#include "util/filenamepart.h"
#include "util/filereplacement.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr char magic[] = "#Record comments";
constexpr std::size_t readPiece = 1 << 16;
constexpr std::chrono::seconds longestWait{2}; // for other programs, while the window stands still
constexpr std::chrono::milliseconds betweenTries{2};
constexpr int mostLooks = 5; // at a file that comes and goes

/// Local, with the zone behind it; empty for a time that has no text that could be read again.
QByteArray timeField(RecordTime time, std::int64_t utcOffset)
{
    constexpr int textSize = 26; // with a year of four digits
    const QString text = timeToString(localTime(time, utcOffset));
    return text.size() == textSize ? (text + utcOffsetToString(utcOffset)).toLatin1() : QByteArray();
}

/// A name, as it stands unless it would break the line.
QByteArray nameField(const QString &name)
{
    const bool breaks = name.contains(QLatin1Char('\t')) || name.contains(QLatin1Char('\n'));
    return (breaks ? escapeTextNoQuote(name) : name).toUtf8();
}

QString tooLarge()
{
    return QStringLiteral("It is too large");
}

/// Null, or why the open file can't be read whole.
QString readAll(FileCalls &calls, int descriptor, QByteArray *bytes)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return qt_error_string(errno);
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("Not a regular file");
    if (status.st_size > CommentLimits::fileBytes)
        return tooLarge();
    std::vector<char> piece(readPiece);
    ssize_t size = 0;
    while ((size = calls.read(descriptor, piece.data(), piece.size())) > 0) {
        bytes->append(piece.data(), int(size));
        if (bytes->size() > CommentLimits::fileBytes)
            return tooLarge();
    }
    return size < 0 ? qt_error_string(errno) : QString();
}

/// A comment file that exists, locked as far as its file system has locks.
class LockedComments {
public:
    LockedComments() = default;
    ~LockedComments() { close(); }
    LockedComments(const LockedComments &) = delete;
    LockedComments &operator=(const LockedComments &) = delete;

    /// Null where there is no file, too; else why it can't be had.
    QString open(const QString &path)
    {
        const auto lastTry = std::chrono::steady_clock::now() + longestWait;
        for (;;) {
            close();
            // Without waiting for a pipe's other end.
            m_descriptor = m_calls.open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK);
            if (m_descriptor < 0)
                return errno == ENOENT ? QString() : qt_error_string(errno);
            const bool isLocked = m_calls.lock(m_descriptor, F_WRLCK, false) == 0;
            const bool isOthers = !isLocked && (errno == EAGAIN || errno == EACCES);
            // Who held the lock before has given the name to a new file.
            if (!isOthers && idIfNamed(m_descriptor, path))
                return {};
            if (std::chrono::steady_clock::now() > lastTry)
                return QStringLiteral("Another program is writing it");
            if (isOthers)
                std::this_thread::sleep_for(betweenTries);
        }
    }
    bool isOpen() const { return m_descriptor >= 0; }
    QString read(QByteArray *bytes) { return readAll(m_calls, m_descriptor, bytes); }

private:
    void close()
    {
        if (m_descriptor >= 0)
            m_calls.close(std::exchange(m_descriptor, -1)); // nothing was written through it
    }

    FileCalls &m_calls = FileCalls::current();
    int m_descriptor = -1;
};

/// The file with this line in the place of all that begin with the key, or behind the rest.
QByteArray changed(const QByteArray &old, const QByteArray &key, const QByteArray &line)
{
    QByteArray out;
    out.reserve(old.size() + line.size() + 1);
    bool isIn = line.isEmpty();
    const char *const end = old.constData() + old.size();
    for (const char *from = old.constData(); from < end;) {
        const auto *feed = static_cast<const char *>(std::memchr(from, '\n', std::size_t(end - from)));
        const char *const next = feed ? feed + 1 : end;
        const int size = int(next - from);
        if (size >= key.size() && std::memcmp(from, key.constData(), std::size_t(key.size())) == 0) {
            out += line;
            isIn = true;
        } else {
            out.append(from, size);
        }
        from = next;
    }
    if (isIn)
        return out;
    if (!out.endsWith('\n'))
        out += '\n';
    return out += line;
}

} // namespace

CommentPlace::CommentPlace(const QString &folder, const QString &variant, const Spectrometer::RecordHead &head,
                           const QString &opmode)
{
    const QString day = timeToString(localTime(head.beginTime, head.beginUtcOffset), QStringLiteral("%Y%m%d"));
    path = QDir(folder).filePath(day + QLatin1Char('-') + fileNamePart(variant) + QStringLiteral(".comments"));
    const QByteArray begin = timeField(head.beginTime, head.beginUtcOffset);
    const QByteArray end = timeField(head.endTime, head.endUtcOffset);
    if (!begin.isEmpty() && !end.isEmpty())
        key = begin + '\t' + end + '\t' + nameField(opmode) + '\t';
}

QString writeComment(const CommentPlace &place, const QString &text)
{
    if (place.key.isEmpty())
        return QStringLiteral("Its times can't be told");
    const QByteArray line = text.isEmpty() ? QByteArray() : place.key + escapeTextNoQuote(text).toUtf8() + '\n';
    if (line.size() > CommentLimits::lineBytes)
        return QStringLiteral("It is too long");
    for (int look = 1;; ++look) {
        LockedComments file;
        QByteArray old;
        QString reason = file.open(place.path);
        if (reason.isNull() && file.isOpen())
            reason = file.read(&old);
        if (!reason.isNull() || (old.isEmpty() && text.isEmpty()))
            return reason;
        if (old.isEmpty())
            old = QByteArray(magic) + '\n';
        else if (!old.startsWith(magic))
            return QStringLiteral("It is no comment file"); // whose comments nobody would read
        const QByteArray all = changed(old, place.key, line);
        if (all.size() > CommentLimits::fileBytes)
            return tooLarge();
        // A new file has no lock. Two programs can't both make it, where no link leads to it.
        const bool isFree = !file.isOpen() && !QFileInfo(place.path).isSymLink();
        reason = replaceFile(place.path, all, isFree ? ExistingFile::Kept : ExistingFile::Replaced);
        if (look == mostLooks || !isFree || reason != qt_error_string(EEXIST))
            return reason;
    }
}
