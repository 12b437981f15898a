#include "util/folders.h"

#include "util/filereplacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

QString makeFolders(const QString &folder, QStringList *made)
{
    for (const QString &path : missingFolders(folder)) {
        if (::mkdir(QFile::encodeName(path).constData(), 0777) == 0)
            made->append(path);
        else if (errno != EEXIST) // another program may make it, too
            return qt_error_string(errno);
    }
    return QFileInfo(folder).isDir() ? QString() : qt_error_string(ENOTDIR);
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
