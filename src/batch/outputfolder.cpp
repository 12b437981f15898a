#include "batch/outputfolder.h"

#include "batch/messagecollector.h"
#include "util/filecalls.h"
#include "util/filereplacement.h"
#include "util/folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace Batch {

namespace {

QString unmadeText(const QString &folder, const QString &reason)
{
    return reason.isNull() ? QString() : QStringLiteral("The folder \"%1\" could not be made: %2").arg(folder, reason);
}

} // namespace

QString unusableFolder(const QString &folder)
{
    if (QFileInfo::exists(folder) && !QFileInfo(folder).isDir())
        return QStringLiteral("\"%1\" isn't a folder.").arg(folder);
    return QString();
}

QString unwritableFolder(const QString &folder)
{
    QStringList made;
    QString reason = unmadeText(folder, makeFolders(folder, &made));
    if (reason.isEmpty()) {
        const QString name = QDir(folder).filePath(QStringLiteral(".morvantide-batch"));
        FileCalls::current().unlink(QFile::encodeName(name + QStringLiteral(".tmp")).constData()); // of a killed run
        const FileReplacement trial(name);
        if (!trial.error().isNull())
            reason = QStringLiteral("Files could not be written to the folder \"%1\": %2").arg(folder, trial.error());
    }
    std::reverse(made.begin(), made.end());
    for (const QString &path : qAsConst(made))
        QDir().rmdir(path);
    return reason;
}

QString makeFolder(const QString &folder)
{
    return unmadeText(folder, makeLastingFolders(folder));
}

bool bringNamesToDisk(const QString &folder, const QStringList &newFolders)
{
    QString reason = syncFolder(folder);
    if (reason.isNull())
        reason = syncNamesOf(newFolders);
    if (!reason.isNull())
        tell(QStringLiteral("The files in \"%1\" might be lost in a power failure: %2").arg(folder, reason));
    return reason.isNull();
}

} // namespace Batch
