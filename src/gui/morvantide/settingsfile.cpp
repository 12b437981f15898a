#include "gui/morvantide/settingsfile.h"

#include "gui/morvantide/installedfiles.h"
#include "util/regularfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString settingsFilePath(const QString &applicationFolder, const QString &userFolder)
{
    const QString name = QStringLiteral("morvantide.conf");
    const QString beside = QDir(applicationFolder).filePath(name);
    const bool isUsable =
        QFileInfo::exists(beside) ? whyNotRegularFile(beside).isNull() : QFileInfo(applicationFolder).isWritable();
    if (isUsable && !InstalledFiles::belongsToSystem(applicationFolder)) // where root could write for all users
        return beside;
    return QDir(userFolder).filePath(name);
}

QString applicationSettingsFile()
{
    return settingsFilePath(QCoreApplication::applicationDirPath(),
                            QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
}
