#include "datafiles/writing/plainfileoutput_file.h"

#include "datafiles/writing/closingfiles.h"
#include "datafiles/writing/continuedfile.h"
#include "datafiles/writing/torntail.h"
#include "util/filecalls.h"
#include "util/fileid.h"
#include "util/lockedfile.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Spectrometer {

namespace {

constexpr off_t mostLookedAt = 1 << 16; // bytes that others have written; more of them count as a header

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

bool isNameOf(int descriptor, const QString &name)
{
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && fileIdOf(name) == FileId(status.st_dev, status.st_ino);
}

} // namespace

OutputFile::OutputFile(const QString &pattern, const QList<QByteArray> &header, ClosingFiles &closing)
    : m_closing(closing), m_pattern(pattern), m_header(header), m_onlyDayCodes(hasOnlyDayCodes(pattern))
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
        m_closing.add({m_handle, m_currentName, rowCount, heldCount}, syncAtClose && rowCount + heldCount > 0);
    }
    m_file.reset();
    m_currentName.clear();
    m_handle = -1;
    rowCount = 0;
    heldCount = 0;
    m_missingHeader.clear();
    heldRows.clear();
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
    // Rows that others wrote without a lock may have ended the block, or be cut off.
    if (m_file && name == m_currentName && ::lseek(m_handle, 0, SEEK_END) == m_end)
        return;
    m_message = m_file ? QStringLiteral("closing \"%2\"\nopening \"%1\"").arg(name, m_currentName)
                       : QStringLiteral("opening \"%1\"").arg(name);
    close();
    m_isNew = !QFileInfo::exists(name);
    try {
        openNamed(name);
        checkHeader();
    } catch (const FileOutputError &) {
        giveUp();
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
    // Programs that take no lock may write at any moment: only the system finds the end and writes there at once.
    const int flags = O_RDWR | O_APPEND | O_CREAT | O_NONBLOCK;
    // A pipe or a device under this name would never end when it is searched for headers.
    FileCalls &calls = FileCalls::current();
    const int handle =
        target.exists() && !target.isFile() ? -1 : calls.open(QFile::encodeName(name).constData(), flags, 0666);
    if (handle < 0)
        throw FileOutputError(QStringLiteral("Failed to open file \"%1\". Data was lost!").arg(name));
    const auto file = std::make_shared<LockedFile>(name);
    // A file that another has taken the name of, between the opening and the lock, would be lost with all its rows.
    if (!file->open(handle, QIODevice::ReadWrite) || !file->lock(LockedFile::WriteLock, false) ||
        !isNameOf(handle, name)) {
        calls.close(handle);
        throw FileOutputError(QStringLiteral("Failed to lock file \"%1\" for writing. Data was lost!").arg(name));
    }
    m_file = file;
    m_currentName = name;
    m_handle = handle;
}

void OutputFile::checkHeader()
{
    m_missingHeader = joined(m_header);
    m_end = ::lseek(m_handle, 0, SEEK_END);
    if (m_header.isEmpty())
        return;
    ContinuedFile file(m_header, passOver, heldRows);
    if (!file.read(FileCalls::current(), m_handle))
        throw FileOutputError(QStringLiteral("Failed to read file \"%1\": %2. Data was lost!")
                                  .arg(m_currentName, qt_error_string(errno)));
    m_end = file.soundEnd();
    if (m_end < file.size())
        moveTail(file);
    m_message += matchHeader ? file.match().message() : QStringLiteral("\nwriting header");
    if (matchHeader && file.match().isComplete()) {
        m_missingHeader.clear();
        flagIds = file.takeFlags();
    }
    if (passOver == PassOver::Nothing)
        writeHeader();
}

void OutputFile::moveTail(const ContinuedFile &file)
{
    const QString tornName = TornTail::fileFor(m_currentName);
    const QString reason = TornTail::move(m_handle, m_currentName, file.soundEnd(), file.size());
    if (!reason.isNull())
        throw FileOutputError(
            fillMarkers(QStringLiteral("Failed to move the cut off end of file \"%1\" to \"%2\": %3. Data was lost!"),
                        {m_currentName, tornName, reason}));
    if (warningCallback)
        warningCallback(
            fillMarkers(QStringLiteral("The last %1 of '%2' was cut off. Its %3 bytes were moved to '%4'"),
                        {file.endsInHeader() ? QStringLiteral("header") : QStringLiteral("row"),
                         QFileInfo(m_currentName).fileName(), QString::number(qint64(file.size() - file.soundEnd())),
                         QFileInfo(tornName).fileName()}));
}

void OutputFile::writeHeader()
{
    const QByteArray text = std::exchange(m_missingHeader, QByteArray());
    if (!text.isEmpty())
        write(text.constData(), std::size_t(text.size()));
}

/// Without its header a file must not be written to. What was made for it goes again.
void OutputFile::giveUp()
{
    if (m_file && m_isNew && ::lseek(m_handle, 0, SEEK_END) == 0)
        FileCalls::current().unlink(QFile::encodeName(m_currentName).constData());
    close();
}

void OutputFile::append(const char *bytes, std::size_t size)
{
    try {
        writeHeader();
    } catch (const FileOutputError &) {
        giveUp();
        throw;
    }
    write(bytes, size);
}

void OutputFile::write(const char *bytes, std::size_t size)
{
    // Past QFile's own buffer: what a full disk refused would stay in it and reach the file with a later row.
    const std::size_t written = writeAsMany(FileCalls::current(), m_handle, bytes, size);
    const bool isWritten = written == size;
    const QString reason = isWritten ? QStringLiteral("Others keep writing into it") : qt_error_string(errno);
    const off_t end = written > 0 ? ::lseek(m_handle, 0, SEEK_CUR) : m_end;
    const off_t begin = end - off_t(written);
    if (isWritten && mayBegin(begin)) {
        m_end = end;
        return;
    }
    const QString message = QStringLiteral("Failed to write into file \"%1\": %2. Data was lost!");
    const QString name = m_currentName;
    takeBack(begin, end);
    if (!isWritten)
        throw FileOutputError(message.arg(name, reason));
    close();
    throw OvertakenError(message.arg(name, reason));
}

/// Whether bytes that begin there stand in a line of their own in the block that the file was found to end in.
bool OutputFile::mayBegin(off_t begin) const
{
    if (begin <= m_end)
        return true;
    QByteArray others(int(std::min<off_t>(begin - m_end, mostLookedAt)), '\0');
    const ssize_t size = FileCalls::current().pread(m_handle, others.data(), std::size_t(others.size()), m_end);
    return size == begin - m_end && others.endsWith('\n') && !others.startsWith('#') && !others.contains("\n#");
}

/// Where others have written behind the bytes, these become a comment.
void OutputFile::takeBack(off_t begin, off_t end)
{
    if (begin == end)
        return;
    FileCalls &calls = FileCalls::current();
    const bool isLast = ::lseek(m_handle, 0, SEEK_END) == end;
    if (isLast && calls.ftruncate(m_handle, begin) == 0)
        return;
    if (!isLast && ::fcntl(m_handle, F_SETFL, 0) == 0 && ::lseek(m_handle, begin, SEEK_SET) == begin) {
        QByteArray comment(int(end - begin), ' ');
        comment.front() = '#';
        comment.back() = '\n';
        writeAll(calls, m_handle, comment.constData(), std::size_t(comment.size()));
    }
    close(); // the next opening mends a broken line
}

void OutputFile::settle()
{
    if (!m_file->isLocked())
        throw FileOutputError(
            QStringLiteral("Failed to lock file \"%1\". Writing succeeded anyway!").arg(m_currentName));
    m_file->touch();
}

} // namespace Spectrometer
