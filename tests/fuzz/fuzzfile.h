#pragma once

#include "fuzz.h"

#include <QFile>
#include <QTemporaryDir>

/// The bytes as a file of that name, in a folder that lasts as long as the process.
inline QString fuzzFile(const char *name, const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    QFile file(folder.filePath(QLatin1String(name)));
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "the file can be written");
    require(file.write(reinterpret_cast<const char *>(data), qint64(size)) == qint64(size), "as a whole");
    return file.fileName();
}
