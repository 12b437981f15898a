#include "batch/outputfolder.h"

#include "batch/messagecollector.h"
#include "util/filecalls.h"
#include "util/filereplacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace Batch {

namespace {

/// Makes a folder and those above it, which are added to `made`, the outermost first. Zero, or the system's error.
int makeFolders(const QString &path, QStringList *made)
{
    const auto makeThis = [&] {
        if (::mkdir(QFile::encodeName(path).constData(), 0777) == 0) {
            made->append(path);
            return 0;
        }
        return errno != EEXIST ? errno : QFileInfo(path).isDir() ? 0 : ENOTDIR;
    };
    const int error = makeThis();
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (error != ENOENT || slash <= 0)
        return error;
    const int errorAbove = makeFolders(path.left(slash), made);
    return errorAbove == 0 ? makeThis() : errorAbove;
}

QString makeFolderNoting(const QString &folder, QStringList *made)
{
    const int error = makeFolders(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()), made);
    return error == 0 ? QString()
                      : QStringLiteral("The folder \"%1\" could not be made: %2").arg(folder, qt_error_string(error));
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
    QString reason = makeFolderNoting(folder, &made);
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
    QStringList made;
    return makeFolderNoting(folder, &made);
}

bool bringNamesToDisk(const QString &folder)
{
    const QString reason = syncFolder(folder);
    if (!reason.isNull())
        tell(QStringLiteral("The files in \"%1\" might be lost in a power failure: %2").arg(folder, reason));
    return reason.isNull();
}

} // namespace Batch
