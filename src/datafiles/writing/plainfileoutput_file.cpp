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
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Spectrometer {

namespace {

constexpr off_t mostLookedAt = 1 << 16; // bytes that others have written; more of them count as a header
constexpr std::size_t mostKept = 64;    // of a row, with its time among them

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

QString wordsOfCut(const QString &name)
{
    return QStringLiteral("File \"%1\" was cut or written over by others. Data was lost!").arg(name);
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
    const QString name = m_currentName, loss = m_file ? lossSinceTheLastLook() : QString();
    if (m_file) {
        m_file->close(); // which unlocks it; the descriptor is ours
        m_closing.add({m_handle, name, rowCount, heldCount}, syncAtClose && rowCount + heldCount > 0);
    }
    m_file.reset();
    m_currentName.clear();
    m_handle = -1;
    rowCount = 0;
    heldCount = 0;
    m_missingHeader.clear();
    heldRows.clear();
    flagIds.clear();
    if (!loss.isNull() && lossCallback)
        lossCallback(name, loss);
}

/// Before a row: whether nobody else has touched the open file, as far as its name and its size tell.
bool OutputFile::isAsLeft() const
{
    const std::optional<FileState> state = fileStateOf(m_currentName);
    return state && state->id == m_id && state->size == m_end;
}

/// Whether these bytes stand in the open file, which has that size.
bool OutputFile::stands(const Piece &piece, off_t size) const
{
    if (piece.first.isEmpty() || size < piece.end)
        return size >= piece.end;
    QByteArray first(piece.first.size(), '\0');
    const ssize_t read = FileCalls::current().pread(m_handle, first.data(), std::size_t(first.size()), piece.begin);
    return read == first.size() && first == piece.first;
}

/// Null, or how the rows of the open file were lost, which makes the file a new one to us or, with its name, unknown.
QString OutputFile::lossSinceTheLastLook()
{
    const std::optional<FileState> state = fileStateOf(m_currentName);
    if (!state || state->id != m_id) {
        m_known.remove(m_currentName);
        return QStringLiteral("File \"%1\" was removed, renamed or replaced while it was written. Data was lost!")
            .arg(m_currentName);
    }
    if (state->size >= m_end && (state->size == m_end || stands(m_last, state->size))) {
        m_known[m_currentName] = m_last;
        return {};
    }
    m_known[m_currentName] = Piece();
    return wordsOfCut(m_currentName);
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
    if (m_file && name == m_currentName && isAsLeft())
        return;
    m_message = m_file ? QStringLiteral("closing \"%2\"\nopening \"%1\"").arg(name, m_currentName)
                       : QStringLiteral("opening \"%1\"").arg(name);
    close();
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
    const int handle = target.exists() && !target.isFile() ? -1 : openDescriptor(name, target.exists());
    if (handle < 0)
        throw FileOutputError(QStringLiteral("Failed to open file \"%1\". Data was lost!").arg(name));
    const auto file = std::make_shared<LockedFile>(name);
    const bool isLocked = file->open(handle, QIODevice::ReadWrite) && file->lock(LockedFile::WriteLock, false);
    const bool isOthers = !isLocked && (errno == EAGAIN || errno == EACCES);
    // A file that another has taken the name of, between the opening and the lock, would be lost with all its rows.
    const std::optional<FileId> id = idIfNamed(handle, name);
    if (!isLocked || !id) {
        if (!isOthers && id)
            removeIfMadeInVain(handle, name);
        FileCalls::current().close(handle);
        throw FileOutputError(QStringLiteral("Failed to lock file \"%1\" for writing. Data was lost!").arg(name));
    }
    m_file = file;
    m_currentName = name;
    m_handle = handle;
    m_id = *id;
    m_end = 0;
    m_last = m_known[name];
    if (stands(m_last, ::lseek(handle, 0, SEEK_END)))
        return;
    m_known[name] = m_last = Piece();
    if (lossCallback)
        lossCallback(name, wordsOfCut(name));
}

/// Below zero with errno set. Throws if the file exists and must not be continued.
int OutputFile::openDescriptor(const QString &name, bool isThere)
{
    const auto open = [this, &name](int how) {
        // Programs that take no lock may write at any moment: only the system finds the end and writes there at once.
        const int flags = O_RDWR | O_APPEND | O_CREAT | O_NONBLOCK | how;
        FileCalls &calls = FileCalls::current();
        int handle = calls.open(QFile::encodeName(name).constData(), flags, 0666);
        if (handle < 0 && (errno == EMFILE || errno == ENFILE)) {
            m_closing.finish();
            handle = calls.open(QFile::encodeName(name).constData(), flags, 0666);
        }
        return handle;
    };
    const bool mayContinue = refusalOfExisting.isEmpty() || m_known.contains(name);
    m_isNew = true;
    const int handle = mayContinue && isThere ? -1 : open(O_EXCL);
    if (handle >= 0 || (!(mayContinue && isThere) && errno != EEXIST))
        return handle;
    if (!mayContinue)
        throw FileOutputError(refusalOfExisting.arg(name));
    m_isNew = false;
    return open(0);
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

void OutputFile::removeIfMadeInVain(int handle, const QString &name)
{
    if (!m_isNew || ::lseek(handle, 0, SEEK_END) != 0)
        return;
    FileCalls::current().unlink(QFile::encodeName(name).constData());
    m_known.remove(name);
}

/// Without its header a file must not be written to. What was made for it goes again.
void OutputFile::giveUp()
{
    if (m_file)
        removeIfMadeInVain(m_handle, m_currentName);
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
    Pieces pieces;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = calls.write(m_handle, bytes + done, size - done);
        if (written == 0)
            errno = EIO; // no reason given: asking again might never end
        if (written <= 0)
            break;
        done += std::size_t(written);
        const off_t end = ::lseek(m_handle, 0, SEEK_CUR), begin = end - written;
        if (!pieces.isEmpty() && pieces.last().end == begin)
            pieces.last().end = end;
        else
            pieces.append({begin, end});
    }
    const bool isWhole = done == size;
    QString reason = isWhole ? QStringLiteral("Others keep writing into it") : qt_error_string(errno);
    if (!pieces.isEmpty())
        pieces.first().first = QByteArray(bytes, int(std::min(size, mostKept)));
    if (isWhole && pieces.size() == 1 && mayBegin(pieces.first())) {
        m_last = pieces.first();
        m_end = m_last.end;
        return;
    }
    const QString message = QStringLiteral("Failed to write into file \"%1\": %2. Data was lost!");
    const QString name = m_currentName;
    const bool isTakenBack = takeBack(pieces, isWhole);
    if (isWhole && !isTakenBack)
        reason = qt_error_string(errno); // it may stand there, so that it must not be written again
    if (!isWhole || !isTakenBack)
        throw FileOutputError(message.arg(name, reason));
    close();
    throw OvertakenError(message.arg(name, reason));
}

/// Whether these bytes stand in a line of their own in the block that the file was found to end in.
bool OutputFile::mayBegin(const Piece &piece) const
{
    const off_t begin = piece.begin;
    if (begin == m_end)
        return true;
    // It was cut since, unless the bytes aren't there: then the offset is wrong, and the system's word has to do.
    if (begin < m_end)
        return !stands(piece, piece.end);
    if (!stands(m_last, begin))
        return false;
    QByteArray others(int(std::min<off_t>(begin - m_end, mostLookedAt)), '\0');
    const ssize_t size = FileCalls::current().pread(m_handle, others.data(), std::size_t(others.size()), m_end);
    return size == begin - m_end && others.endsWith('\n') && !others.startsWith('#') && !others.contains("\n#");
}

/// Where others have written behind the bytes, or those of a whole row can't be cut off, these become a comment. False
/// with errno set if that fails.
bool OutputFile::takeBack(const Pieces &pieces, bool isWhole)
{
    bool isCut = true;
    int error = 0;
    for (int i = pieces.size() - 1; i >= 0; --i) {
        const bool isLast = isCut && ::lseek(m_handle, 0, SEEK_END) == pieces[i].end;
        if (isLast && (cutText(FileCalls::current(), m_handle, pieces[i].begin) || errno == ESTALE))
            continue;
        isCut = false;
        const bool isLeft = isLast && !isWhole; // the next opening moves it out
        if (!isLeft && !commentOut(pieces[i]))
            error = errno;
    }
    if (!isCut)
        close(); // the next opening mends a broken line
    errno = error;
    return error == 0;
}

bool OutputFile::commentOut(const Piece &piece)
{
    QByteArray comment(int(piece.end - piece.begin), ' ');
    comment.front() = '#';
    comment.back() = '\n';
    return ::fcntl(m_handle, F_SETFL, 0) == 0 && ::lseek(m_handle, piece.begin, SEEK_SET) == piece.begin &&
           writeAll(FileCalls::current(), m_handle, comment.constData(), std::size_t(comment.size()));
}

void OutputFile::settle()
{
    if (!m_file->isLocked())
        throw FileOutputError(
            QStringLiteral("Failed to lock file \"%1\". Writing succeeded anyway!").arg(m_currentName));
    m_file->touch(); // if it can't be, the row stands, and its writing has set the time
}

} // namespace Spectrometer
