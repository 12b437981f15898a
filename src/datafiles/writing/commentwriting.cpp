#include "datafiles/writing/commentwriting.h"

#include "util/filecalls.h"
#include "util/filenamepart.h"
#include "util/filereplacement.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr char magic[] = "#Record comments";
constexpr std::size_t readPiece = 1 << 16;
constexpr int largestFile = 1'000'000'000; // so that the changed one fits into a byte array

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

/// Null, or why the open file can't be read whole.
QString readAll(FileCalls &calls, int descriptor, QByteArray *bytes)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return qt_error_string(errno);
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("Not a regular file");
    std::vector<char> piece(readPiece);
    ssize_t size = 0;
    while ((size = calls.read(descriptor, piece.data(), piece.size())) > 0) {
        bytes->append(piece.data(), int(size));
        if (bytes->size() > largestFile)
            return QStringLiteral("It is too large");
    }
    return size < 0 ? qt_error_string(errno) : QString();
}

/// The same for a path, where no file is an empty one.
QString readIfThere(const QString &path, QByteArray *bytes)
{
    FileCalls &calls = FileCalls::current();
    // Without waiting for a pipe's other end.
    const int descriptor = calls.open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK);
    if (descriptor < 0)
        return errno == ENOENT ? QString() : qt_error_string(errno);
    const QString reason = readAll(calls, descriptor, bytes);
    calls.close(descriptor); // nothing was written through it
    return reason;
}

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
    QByteArray old;
    const QString reason = readIfThere(place.path, &old);
    if (!reason.isNull())
        return reason;
    if (old.isEmpty() && text.isEmpty())
        return {};
    if (old.isEmpty())
        old = QByteArray(magic) + '\n';
    else if (!old.startsWith(magic))
        return QStringLiteral("It is no comment file"); // whose comments nobody would read
    const QByteArray line = text.isEmpty() ? QByteArray() : place.key + escapeTextNoQuote(text).toUtf8() + '\n';
    return replaceFile(place.path, changed(old, place.key, line));
}
