#include "gui/morvantide/installedfiles.h"

#include <QDir>
#include <QFileInfo>

namespace InstalledFiles {

namespace {

/// From build/PRESET/src/app to the root of the source tree, and one more.
constexpr int mostFoldersAbove = 5;

} // namespace

bool belongsToSystem(const QString &applicationFolder)
{
    return QDir::cleanPath(applicationFolder).startsWith(QLatin1String("/usr/"));
}

QStringList sharedFolders(const QString &applicationFolder)
{
    if (!belongsToSystem(applicationFolder))
        return {};
    QStringList folders{QDir::cleanPath(applicationFolder + QStringLiteral("/../share/morvantide")),
                        QStringLiteral("/usr/share/morvantide")};
    folders.removeDuplicates();
    return folders;
}

QStringList layoutsIn(const QStringList &folders)
{
    QStringList paths;
    for (const QString &folder : folders)
        for (const QFileInfo &file : QDir(folder).entryInfoList({QStringLiteral("*.windowsetup")}, QDir::Files))
            paths << file.absoluteFilePath();
    return paths;
}

QString layoutToRestore(const QString &ownLayout, const QStringList &sharedFolders)
{
    if (QFileInfo::exists(ownLayout))
        return ownLayout;
    for (const QString &folder : sharedFolders) {
        const QString shared = QDir(folder).filePath(QStringLiteral("default.windowsetup"));
        if (QFileInfo::exists(shared))
            return shared;
    }
    return ownLayout;
}

QString userGuidePage(const QString &applicationFolder)
{
    const QString guide = QDir::cleanPath(applicationFolder + QStringLiteral("/../share/morvantide/guide"));
    QStringList pages{guide + QStringLiteral("/user-guide.html"), guide + QStringLiteral("/user-guide.md")};
    QDir folder(applicationFolder);
    for (int above = 0; above < mostFoldersAbove && folder.cdUp(); ++above)
        pages << folder.filePath(QStringLiteral("docs/user-guide.md"));
    for (const QString &page : qAsConst(pages))
        if (QFileInfo(page).isFile())
            return page;
    return QString();
}

} // namespace InstalledFiles
