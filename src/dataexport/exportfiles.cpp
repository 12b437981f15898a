#include "dataexport/exportfiles.h"

#include "util/filecalls.h"
#include "util/folders.h"
#include "util/regularfile.h"
#include "util/temporaryfile.h"
#include "util/workteam.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace DataExport {

namespace {

constexpr std::size_t mostOpen = 64;
constexpr int syncers = 16;          // threads that wait for the disk, which writes what several ask for at once
constexpr int flushedSize = 1 << 16; // bytes that gather before they are written
constexpr mode_t newFile = 0666;     // less what the user's mask takes

} // namespace

struct ExportFiles::File {
    QString path;
    QByteArray unfinished; ///< null if it couldn't be opened
    int descriptor = -1;
    QByteArray buffer;         ///< to be written
    bool replacesFile = false; ///< something stood at the path
};

ExportFiles::ExportFiles(const QByteArray &head, ExistingFile existing)
    : m_logger(QStringLiteral("dataexport")), m_calls(FileCalls::current()), m_head(head), m_existing(existing)
{
}

ExportFiles::~ExportFiles()
{
    cancel();
}

// ---- opening

void ExportFiles::tellUnopened(const QString &path, const QString &reason)
{
    m_logger.log(Log::Error, QStringLiteral("Unable to open file '%1'").arg(path));
    m_logger.log(Log::Warning, QStringLiteral("%1: %2").arg(path, reason));
}

bool ExportFiles::makeFolder(const QString &folder)
{
    if (makeFolders(folder, &m_madeFolders).isNull())
        return true;
    if (m_toldFolder != folder)
        m_logger.log(Log::Error, QStringLiteral("Failed to create directory '%1'").arg(folder));
    m_toldFolder = folder;
    return false;
}

/// Why what stands at that path can't be replaced; null if it can.
QString ExportFiles::obstacleAt(const QString &path) const
{
    if (m_existing == ExistingFile::Kept)
        return qt_error_string(EEXIST);
    const QString kind = whyNotRegularFile(path);
    const bool isWritable = ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
    return !kind.isNull() || isWritable ? kind : qt_error_string(errno);
}

bool ExportFiles::create(File &file)
{
    struct stat old {};
    const QByteArray target = QFile::encodeName(file.path);
    file.replacesFile = ::lstat(target.constData(), &old) == 0;
    if (file.replacesFile) {
        const QString reason = obstacleAt(file.path);
        if (!reason.isNull()) {
            tellUnopened(file.path, reason);
            return false;
        }
    }
    file.descriptor = createBeside(m_calls, target, "unfinished", newFile, &file.unfinished);
    if (file.descriptor < 0) {
        tellUnopened(file.path, qt_error_string(errno));
        return false;
    }
    const bool hasOld = file.replacesFile && ::stat(target.constData(), &old) == 0; // of what a link leads to
    if (hasOld && !giveAttributes(m_calls, old, file.descriptor))
        fail(file, errno);
    return true;
}

ExportFiles::FilePointer ExportFiles::begin(const QString &path)
{
    auto file = std::make_shared<File>();
    file->path = path;
    makeRoom();
    if (!m_failed && makeFolder(QFileInfo(path).absolutePath()) && create(*file)) {
        file->buffer = m_head;
        m_open.push_back(file);
    }
    m_files.insert(path, file);
    return file;
}

bool ExportFiles::reopen(File &file)
{
    file.descriptor = m_calls.open(file.unfinished.constData(), O_WRONLY | O_APPEND);
    return file.descriptor >= 0 || fail(file, errno);
}

/// The file, open; or one that isn't open and can't be.
ExportFiles::FilePointer ExportFiles::fileFor(const QString &path)
{
    if (!m_open.empty() && m_open.back()->path == path)
        return m_open.back();
    const FilePointer known = m_files.value(path);
    if (!known)
        return begin(path);
    if (known->unfinished.isNull())
        return known;
    const auto position = std::find(m_open.begin(), m_open.end(), known);
    if (position != m_open.end()) {
        std::rotate(position, position + 1, m_open.end());
        return known;
    }
    makeRoom();
    if (!m_failed && reopen(*known))
        m_open.push_back(known);
    return known;
}

/// Closes the file that wasn't used for longest, if there are as many as may be.
void ExportFiles::makeRoom()
{
    if (m_open.size() < mostOpen)
        return;
    const FilePointer oldest = m_open.front();
    m_open.erase(m_open.begin());
    close(*oldest);
}

// ---- writing

bool ExportFiles::fail(const File &file, int systemError)
{
    if (!m_failed)
        m_logger.log(Log::Error, QStringLiteral("Unable to write file '%1': %2. Nothing is exported.")
                                     .arg(file.path, qt_error_string(systemError)));
    m_failed = true;
    return false;
}

bool ExportFiles::flush(File &file)
{
    const QByteArray bytes = file.buffer;
    file.buffer.resize(0);
    return writeAll(m_calls, file.descriptor, bytes.constData(), std::size_t(bytes.size())) || fail(file, errno);
}

bool ExportFiles::close(File &file)
{
    const bool isWritten = m_failed || flush(file);
    file.buffer = QByteArray();
    const bool isClosed = m_calls.close(std::exchange(file.descriptor, -1)) == 0 || fail(file, errno);
    return isWritten && isClosed;
}

bool ExportFiles::append(const QString &path, const char *bytes, std::size_t size)
{
    if (m_failed)
        return false;
    File &file = *fileFor(path);
    if (file.descriptor < 0)
        return false;
    file.buffer.append(bytes, int(size));
    return file.buffer.size() < flushedSize || flush(file);
}

// ---- the end

std::vector<ExportFiles::FilePointer> ExportFiles::begunFiles() const
{
    std::vector<FilePointer> begun;
    for (const FilePointer &file : m_files)
        if (!file->unfinished.isNull())
            begun.push_back(file);
    std::sort(begun.begin(), begun.end(), [](const FilePointer &a, const FilePointer &b) { return a->path < b->path; });
    return begun;
}

QStringList ExportFiles::paths() const
{
    QStringList paths;
    for (const FilePointer &file : begunFiles())
        paths << file->path;
    return paths;
}

/// False, with a message, if one of them isn't on the disk.
bool ExportFiles::syncAll(const std::vector<FilePointer> &files)
{
    std::vector<QString> reasons(files.size());
    WorkTeam team(files.size() > mostOpen ? syncers : 1);
    team.run(files.size(), [&](std::size_t i) { reasons[i] = syncFile(QFile::decodeName(files[i]->unfinished)); });
    const auto failed =
        std::find_if(reasons.begin(), reasons.end(), [](const QString &reason) { return !reason.isNull(); });
    if (failed == reasons.end())
        return true;
    const QString &path = files[std::size_t(failed - reasons.begin())]->path;
    m_logger.log(Log::Error, QStringLiteral("Unable to write file '%1': %2").arg(path, *failed));
    return false;
}

/// Each to its place. If one can't be moved, those before it are taken back that took no other's place.
bool ExportFiles::moveAll(const std::vector<FilePointer> &files)
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString reason = moveSyncedFile(QFile::decodeName((*file)->unfinished), (*file)->path, m_existing);
        if (reason.isNull())
            continue;
        m_logger.log(Log::Error, QStringLiteral("Unable to write file '%1': %2").arg((*file)->path, reason));
        for (auto moved = files.begin(); moved != file; ++moved)
            if (!(*moved)->replacesFile)
                m_calls.unlink(QFile::encodeName((*moved)->path).constData());
        return false;
    }
    for (const FilePointer &file : files)
        file->unfinished = QByteArray();
    return true;
}

bool ExportFiles::commit()
{
    for (const FilePointer &file : m_open)
        close(*file);
    m_open.clear();
    const std::vector<FilePointer> files = begunFiles();
    m_failed = m_failed || !syncAll(files) || !moveAll(files);
    if (m_failed) {
        cancel();
        return false;
    }
    if (files.empty()) {
        cancel();
        return true;
    }
    const QString folder = QFileInfo(files.front()->path).absolutePath();
    QString reason = syncFolder(folder);
    if (reason.isNull())
        reason = syncNamesOf(m_madeFolders);
    m_areNamesOnDisk = reason.isNull();
    if (!m_areNamesOnDisk)
        m_logger.log(Log::Warning,
                     QStringLiteral("The files in '%1' might be lost in a power failure: %2").arg(folder, reason));
    m_madeFolders.clear();
    m_files.clear();
    return true;
}

void ExportFiles::cancel()
{
    m_failed = true; // nothing is written any more
    for (const FilePointer &file : m_open)
        close(*file);
    m_open.clear();
    for (const FilePointer &file : begunFiles())
        m_calls.unlink(file->unfinished.constData());
    m_files.clear();
    for (; !m_madeFolders.isEmpty(); m_madeFolders.removeLast())
        QDir().rmdir(m_madeFolders.last());
}

} // namespace DataExport
