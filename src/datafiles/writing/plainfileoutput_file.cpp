#include "datafiles/writing/plainfileoutput_file.h"

#include "datafiles/writing/plainfileoutput_match.h"
#include "util/filecalls.h"
#include "util/lockedfile.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace Spectrometer {

namespace {

constexpr std::size_t readPiece = 1 << 16;

/// No code finer than a day in the pattern, "%s" and "%f" included.
bool hasOnlyDayCodes(const QString &pattern)
{
    for (int i = 0; i + 1 < pattern.size(); ++i) {
        if (pattern.at(i) != QLatin1Char('%'))
            continue;
        ++i;
        while (i < pattern.size() && pattern.at(i).isDigit())
            ++i;
        if (i < pattern.size() && QStringLiteral("HMSsf").contains(pattern.at(i)))
            return false;
    }
    return true;
}

QByteArray joined(const QList<QByteArray> &lines)
{
    QByteArray text;
    for (const QByteArray &line : lines)
        text += line + '\n';
    return text;
}

} // namespace

OutputFile::OutputFile(const QString &pattern, const QList<QByteArray> &header)
    : m_pattern(pattern), m_header(header), m_onlyDayCodes(hasOnlyDayCodes(pattern))
{
}

OutputFile::~OutputFile()
{
    close();
}

void OutputFile::close()
{
    if (m_file) {
        m_file->close(); // which unlocks it; the descriptor is ours
        const bool closed = FileCalls::current().close(m_handle) == 0;
        const QString failure = closed ? QString()
                                       : QStringLiteral("Failed to close file \"%1\": %2. Data was lost!")
                                             .arg(m_currentName, qt_error_string(errno));
        if (closeCallback)
            closeCallback(m_currentName, rowCount, failure);
    }
    m_file.reset();
    m_currentName.clear();
    m_handle = -1;
    rowCount = 0;
    flagIds.clear();
}

QString OutputFile::nameFor(RecordTime localTime)
{
    // A negative time has no text, and so no file.
    if (localTime < RecordTime())
        throw FileOutputError(
            QStringLiteral("Failed to open file \"%1\". Data was lost!").arg(timeToString(localTime, m_pattern)));
    const std::int64_t day = ticksOf(localTime) / ticksPerDay;
    if (!m_onlyDayCodes || day != m_namedDay) {
        m_nameOfDay = timeToString(localTime, m_pattern);
        m_namedDay = day;
    }
    return m_nameOfDay;
}

void OutputFile::openFor(RecordTime localTime)
{
    m_wantedName = m_pattern;
    const QString name = m_wantedName = nameFor(localTime);
    if (m_file && name == m_currentName)
        return;
    m_message = m_file ? QStringLiteral("closing \"%2\"\nopening \"%1\"").arg(name, m_currentName)
                       : QStringLiteral("opening \"%1\"").arg(name);
    close();
    const bool existed = QFileInfo::exists(name);
    try {
        openNamed(name);
        checkHeader();
    } catch (const FileOutputError &) {
        // Without its header a file must not be written to. What was made for it goes again.
        if (!existed && m_file)
            FileCalls::current().unlink(QFile::encodeName(name).constData());
        close();
        throw;
    }
    if (messageCallback && !m_message.isEmpty())
        messageCallback(m_message);
}

void OutputFile::openNamed(const QString &name)
{
    const QFileInfo target(name);
    if (!target.exists()) {
        m_message += QStringLiteral("\nfile did not exist");
        const QString folder = target.path();
        if (!QFileInfo::exists(folder) && !QDir().mkpath(folder))
            throw FileOutputError(QStringLiteral("Failed to create path \"%1\". Data was lost!").arg(folder));
    }
    // A pipe or a device under this name would never end when it is searched for headers.
    FileCalls &calls = FileCalls::current();
    const int handle = target.exists() && !target.isFile()
                           ? -1
                           : calls.open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_NONBLOCK, 0666);
    if (handle < 0)
        throw FileOutputError(QStringLiteral("Failed to open file \"%1\". Data was lost!").arg(name));
    const auto file = std::make_shared<LockedFile>(name);
    if (!file->open(handle, QIODevice::ReadWrite) || !file->lock(LockedFile::WriteLock, false)) {
        calls.close(handle);
        throw FileOutputError(QStringLiteral("Failed to lock file \"%1\" for writing. Data was lost!").arg(name));
    }
    m_file = file;
    m_currentName = name;
    m_handle = handle;
}

int OutputFile::matchedHeader(bool *endsInLine)
{
    // A line that is longer than all header lines can't match, however long it is.
    int longest = 0;
    for (const QByteArray &line : m_header)
        longest = std::max(longest, line.size());
    HeaderMatch match(m_header);
    QByteArray line; // at hand, as far as it matters
    const auto extend = [&](const char *begin, const char *end) {
        line.append(begin, int(std::min<std::ptrdiff_t>(end - begin, longest + 2 - line.size())));
    };
    const auto endLine = [&] {
        if (line.endsWith('\r'))
            line.chop(1);
        match.addLine(line);
        line.resize(0);
    };

    std::vector<char> piece(readPiece);
    ssize_t size = ::lseek(m_handle, 0, SEEK_SET) < 0 ? -1 : 0;
    *endsInLine = true;
    while (size >= 0 && (size = FileCalls::current().read(m_handle, piece.data(), piece.size())) > 0) {
        const char *begin = piece.data(), *const end = begin + size;
        while (const void *feed = std::memchr(begin, '\n', std::size_t(end - begin))) {
            extend(begin, static_cast<const char *>(feed));
            endLine();
            begin = static_cast<const char *>(feed) + 1;
        }
        extend(begin, end);
        *endsInLine = begin == end;
    }
    if (size < 0)
        throw FileOutputError(QStringLiteral("Failed to read file \"%1\": %2. Data was lost!")
                                  .arg(m_currentName, qt_error_string(errno)));
    if (!*endsInLine)
        endLine();
    m_message += match.message();
    return match.matched();
}

void OutputFile::checkHeader()
{
    QByteArray text = joined(m_header);
    if (matchHeader && !m_header.isEmpty()) {
        bool endsInLine = true;
        if (matchedHeader(&endsInLine) == m_header.size())
            text.clear();
        if (!endsInLine)
            text.prepend('\n');
    } else {
        m_message += QStringLiteral("\nwriting header");
    }
    if (!text.isEmpty())
        append(text.constData(), std::size_t(text.size()));
    flagIds.clear();
}

void OutputFile::append(const char *bytes, std::size_t size)
{
    // Past QFile's own buffer: what a full disk refused would stay in it and reach the file with a later row.
    FileCalls &calls = FileCalls::current();
    const off_t end = ::lseek(m_handle, 0, SEEK_END);
    if (end < 0 || !writeAll(calls, m_handle, bytes, size)) {
        const QString name = m_currentName;
        const QString reason = qt_error_string(errno);
        if (end >= 0 && calls.ftruncate(m_handle, end) != 0)
            close(); // the next opening mends the broken line
        throw FileOutputError(QStringLiteral("Failed to write into file \"%1\": %2. Data was lost!").arg(name, reason));
    }
}

void OutputFile::settle()
{
    if (!m_file->isLocked())
        throw FileOutputError(
            QStringLiteral("Failed to lock file \"%1\". Writing succeeded anyway!").arg(m_currentName));
    m_file->touch();
}

} // namespace Spectrometer
