#include "batch/stagedoutput.h"

#include "batch/messagecollector.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Batch {

namespace {

QString resolved(const QString &folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(folder).absoluteFilePath()) : canonical;
}

/// Waits until the file, or the folder's list of files, is on the disk: a power failure behind a rename that came first
/// would leave an empty file in place of the old one. Null, or why it failed.
QString settle(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const bool settled = descriptor >= 0 && ::fsync(descriptor) == 0;
    const int error = errno;
    if (descriptor >= 0)
        ::close(descriptor);
    return settled ? QString() : QString::fromLocal8Bit(std::strerror(error));
}

/// Moves a file, in place of one that may be there. Null, or why it failed.
QString moveFile(const QString &from, const QString &to)
{
    QString reason = settle(from);
    if (reason.isNull() && std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        reason = QString::fromLocal8Bit(std::strerror(errno));
    return reason;
}

} // namespace

StagedOutput::StagedOutput(const QString &folder) : m_folder(resolved(folder))
{
    QDir().mkpath(QFileInfo(m_folder).path()); // a failure shows in the next step
    m_staging = std::make_unique<QTemporaryDir>(m_folder + QStringLiteral(".unfinished-XXXXXX"));
    if (!isValid())
        tell(QStringLiteral("A folder beside \"%1\" could not be made: %2").arg(folder, m_staging->errorString()));
}

StagedOutput::~StagedOutput() = default;

bool StagedOutput::bringIn(const QStringList &names)
{
    const QDir folder(m_folder);
    for (const QString &name : names) {
        const QFileInfo target(folder.filePath(name));
        if (!target.exists())
            continue;
        m_broughtIn.insert(name, {target.size(), target.lastModified()});
        QFile file(target.filePath());
        if (!file.copy(m_staging->filePath(name))) {
            tell(QStringLiteral("\"%1\" could not be copied: %2").arg(target.filePath(), file.errorString()));
            return false;
        }
    }
    return true;
}

bool StagedOutput::isUntouched(const QString &name) const
{
    const QFileInfo target(QDir(m_folder).filePath(name));
    const auto before = m_broughtIn.constFind(name);
    if (before == m_broughtIn.constEnd())
        return !target.exists();
    return target.exists() && target.size() == before->size && target.lastModified() == before->modified;
}

bool StagedOutput::moveOut()
{
    bool moved = true;
    QDir().mkpath(m_folder);
    const QStringList names = QDir(m_staging->path()).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        const QString target = QDir(m_folder).filePath(name);
        const QString reason = isUntouched(name) ? moveFile(m_staging->filePath(name), target)
                                                 : QStringLiteral("it was written by others in the meantime");
        if (reason.isNull())
            continue;
        moved = false;
        tell(QStringLiteral("\"%1\" was not written: %2").arg(target, reason));
    }
    settle(m_folder); // not every file system can: the files themselves are safe by now
    return moved;
}

} // namespace Batch
