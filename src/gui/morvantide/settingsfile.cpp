#include "gui/morvantide/settingsfile.h"

#include <QDir>
#include <QFileInfo>

QString settingsFilePath(const QString &applicationFolder, const QString &userFolder)
{
    const QString name = QStringLiteral("morvantide.conf");
    const QString beside = QDir(applicationFolder).filePath(name);
    if (QFileInfo::exists(beside) || QFileInfo(applicationFolder).isWritable())
        return beside;
    return QDir(userFolder).filePath(name);
}
