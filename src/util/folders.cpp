#include "util/folders.h"

#include "util/filereplacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace {

/// Zero, or the system's error.
int makeThese(const QString &path, QStringList *made)
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
    const int errorAbove = makeThese(path.left(slash), made);
    return errorAbove == 0 ? makeThis() : errorAbove;
}

} // namespace

QString makeFolders(const QString &folder, QStringList *made)
{
    const int error = makeThese(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()), made);
    return error == 0 ? QString() : qt_error_string(error);
}

QString makeLastingFolders(const QString &folder)
{
    QStringList made;
    const QString reason = makeFolders(folder, &made);
    return reason.isNull() ? syncNamesOf(made) : reason;
}

QStringList missingFolders(const QString &folder)
{
    QStringList missing;
    for (QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath()); !QFileInfo::exists(path);
         path = QFileInfo(path).path())
        missing.prepend(path);
    return missing;
}

QString syncNamesOf(const QStringList &made)
{
    QString reason;
    for (const QString &folder : made)
        if (reason.isNull())
            reason = syncFolder(QFileInfo(folder).path());
    return reason;
}
