#include "util/regularfile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

QString whyNotRegularFile(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return qt_error_string(errno);
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return {};
    case S_IFDIR:
        return QStringLiteral("It is a folder");
    case S_IFIFO:
        return QStringLiteral("It is a pipe");
    case S_IFSOCK:
        return QStringLiteral("It is a socket");
    default:
        return QStringLiteral("It is a device");
    }
}

bool openRegularFile(QFile &file, QString *reason)
{
    QString why = whyNotRegularFile(file.fileName());
    if (why.isNull() && !file.open(QIODevice::ReadOnly))
        why = file.errorString();
    if (reason)
        *reason = why;
    return why.isNull();
}

QByteArray readUpTo(QFile &file, qint64 mostBytes)
{
    constexpr qint64 block = 64 << 10;
    QByteArray bytes, more;
    do {
        more = file.read(std::min(block, mostBytes - bytes.size()));
        bytes += more;
    } while (!more.isEmpty());
    return bytes;
}
