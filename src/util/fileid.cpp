#include "util/fileid.h"

#include <QFile>

#include <sys/stat.h>

std::optional<FileId> fileIdOf(const QString &path)
{
    const std::optional<FileState> state = fileStateOf(path);
    return state ? std::optional<FileId>(state->id) : std::nullopt;
}

std::optional<FileId> idIfNamed(int descriptor, const QString &path)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return {};
    const FileId id(status.st_dev, status.st_ino);
    return fileIdOf(path) == id ? std::optional<FileId>(id) : std::nullopt;
}

std::optional<FileState> fileStateOf(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return FileState{FileId(status.st_dev, status.st_ino), status.st_size};
}
