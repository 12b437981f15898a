#include "gui/common/iconhelp.h"

#include <QFile>

QIcon namedIcon(const QString &name)
{
    QIcon icon;
    for (const char *pattern : {":%1-16.png", ":%1-22.png", ":%1.png"}) {
        const QString path = QString::fromLatin1(pattern).arg(name);
        if (QFile::exists(path))
            icon.addFile(path);
    }
    return icon;
}
