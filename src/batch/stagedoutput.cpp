#include "batch/stagedoutput.h"

#include "batch/messagecollector.h"
#include "batch/outputfolder.h"
#include "datafiles/writing/torntail.h"
#include "util/filereplacement.h"
#include "util/folders.h"
#include "util/lockedfile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Batch {

namespace {

QString resolved(const QString &folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(folder).absoluteFilePath()) : canonical;
}

void tellUnwritten(const QString &path, const QString &reason)
{
    tell(QStringLiteral("\"%1\" was not written: %2").arg(path, reason));
}

} // namespace

QString StagedOutput::obstacleTo(const QString &folder)
{
    const QString fault = unwritableFolder(folder);
    return fault.isEmpty() ? unwritableFolder(QFileInfo(resolved(folder)).path()) : fault;
}

StagedOutput::StagedOutput(const QString &folder) : m_folder(resolved(folder))
{
    makeLastingFolders(QFileInfo(m_folder).path()); // where it fails, the next step does
    m_staging = std::make_unique<QTemporaryDir>(m_folder + QStringLiteral(".unfinished-XXXXXX"));
    if (!isValid())
        tell(QStringLiteral("A folder beside \"%1\" could not be made: %2").arg(folder, m_staging->errorString()));
}

StagedOutput::~StagedOutput() = default;

QString StagedOutput::target(const QString &name) const
{
    return QDir(m_folder).filePath(name);
}

void StagedOutput::noteState(const QString &name)
{
    const QFileInfo file(target(name));
    if (file.exists())
        m_existing.insert(name, {file.size(), file.lastModified()});
}

bool StagedOutput::bringIn(const QStringList &names)
{
    QStringList all = names;
    for (const QString &name : names)
        all << TornTail::fileFor(name);
    for (const QString &name : qAsConst(all)) {
        noteState(name);
        if (!m_existing.contains(name))
            continue;
        const QString reason = copyFile(target(name), m_staging->filePath(name), ExistingFile::Kept);
        if (reason.isNull())
            continue;
        tell(QStringLiteral("\"%1\" could not be copied: %2").arg(target(name), reason));
        return false;
    }
    return true;
}

void StagedOutput::replace(const QStringList &names)
{
    for (const QString &name : names)
        noteState(name);
}

bool StagedOutput::isUntouched(const QString &name) const
{
    const QFileInfo file(target(name));
    const auto before = m_existing.constFind(name);
    if (before == m_existing.constEnd())
        return !file.exists();
    return file.exists() && file.size() == before->size && file.lastModified() == before->modified;
}

QString StagedOutput::faultOf(const QString &name)
{
    if (m_existing.contains(name) && QFileInfo::exists(target(name))) {
        m_locked.push_back(std::make_unique<LockedFile>(target(name)));
        if (!m_locked.back()->open(QIODevice::ReadWrite))
            return m_locked.back()->errorString();
        if (!m_locked.back()->lock(LockedFile::WriteLock, false))
            return QStringLiteral("another program is writing it");
    }
    if (!isUntouched(name))
        return QStringLiteral("it was written by others in the meantime");
    const QString staged = m_staging->filePath(name);
    const QString reason = m_existing.contains(name) ? giveAttributes(target(name), staged) : QString();
    return reason.isNull() ? syncFile(staged) : reason;
}

void StagedOutput::takeBack(QStringList *names) const
{
    const auto takesBack = [this](const QString &name) {
        return !m_existing.contains(name) &&
               moveSyncedFile(target(name), m_staging->filePath(name), ExistingFile::Kept).isNull();
    };
    names->erase(std::remove_if(names->begin(), names->end(), takesBack), names->end());
}

StagedOutput::Moved StagedOutput::moveOut()
{
    Moved moved;
    QStringList names = QDir(m_staging->path()).entryList(QDir::Files, QDir::Name);
    // What was cut off has to stand before the file that lacks it does.
    std::stable_partition(names.begin(), names.end(),
                          [](const QString &name) { return name.endsWith(TornTail::fileFor(QString())); });
    const auto move = [&](const QString &name) {
        const auto existing = m_existing.contains(name) ? ExistingFile::Replaced : ExistingFile::Kept;
        return moveSyncedFile(m_staging->filePath(name), target(name), existing);
    };
    for (const QString &name : names) {
        const QString reason = faultOf(name);
        if (!reason.isNull())
            tellUnwritten(target(name), reason);
        moved.complete = moved.complete && reason.isNull();
    }
    const QString folderFault = moved.complete ? makeFolder(m_folder) : QString();
    if (!folderFault.isEmpty())
        tell(folderFault);
    moved.complete = moved.complete && folderFault.isEmpty();
    if (!moved.complete) {
        m_locked.clear();
        return moved;
    }

    for (const QString &name : names) {
        const QString reason = move(name);
        if (reason.isNull()) {
            moved.names << name;
            continue;
        }
        tellUnwritten(target(name), reason);
        takeBack(&moved.names);
        moved.complete = false;
        break;
    }
    m_locked.clear();
    moved.complete = bringNamesToDisk(m_folder) && moved.complete;
    return moved;
}

} // namespace Batch
