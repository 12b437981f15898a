#include "util/fileid.h"

#include <QFile>

#include <sys/stat.h>

std::optional<FileId> fileIdOf(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return FileId(status.st_dev, status.st_ino);
}
