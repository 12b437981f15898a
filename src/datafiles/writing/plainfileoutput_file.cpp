#include "datafiles/writing/plainfileoutput_file.h"

#include "datafiles/writing/continuedfile.h"
#include "datafiles/writing/torntail.h"
#include "util/filecalls.h"
#include "util/fileid.h"
#include "util/lockedfile.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Spectrometer {

namespace {

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
    // A pipe or a device under this name would never end when it is searched for headers.
    FileCalls &calls = FileCalls::current();
    const int handle = target.exists() && !target.isFile()
                           ? -1
                           : calls.open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_NONBLOCK, 0666);
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
    if (m_header.isEmpty())
        return;
    ContinuedFile file(m_header, findHeldRows ? &heldRows : nullptr);
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
    if (!findHeldRows)
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
    FileCalls &calls = FileCalls::current();
    const off_t end = ::lseek(m_handle, 0, SEEK_END);
    if (end < 0 || !writeAll(calls, m_handle, bytes, size)) {
        const QString name = m_currentName;
        const QString reason = qt_error_string(errno);
        if (end >= 0 && calls.ftruncate(m_handle, end) != 0)
            close(); // the next opening mends the broken line
        throw FileOutputError(QStringLiteral("Failed to write into file \"%1\": %2. Data was lost!").arg(name, reason));
    }
    m_end = end + off_t(size);
}

void OutputFile::settle()
{
    if (!m_file->isLocked())
        throw FileOutputError(
            QStringLiteral("Failed to lock file \"%1\". Writing succeeded anyway!").arg(m_currentName));
    m_file->touch();
}

} // namespace Spectrometer
