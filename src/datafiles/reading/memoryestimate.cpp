#include "datafiles/reading/memoryestimate.h"

#include <QFile>

qint64 availableMemory()
{
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = file.readAll();
    const QByteArray key("MemAvailable:");
    const int begin = text.indexOf(key);
    if (begin < 0)
        return 0;
    const QByteArray line = text.mid(begin + key.size(), text.indexOf('\n', begin) - begin - key.size());
    return line.trimmed().split(' ').first().toLongLong() * 1024;
}

qint64 estimatedMemory(qint64 fileBytes)
{
    return fileBytes / 10 * 13; // a number takes 8 bytes, its text with the tab about 7, a record a few hundred besides
}

QString memoryWarning(qint64 fileBytes, qint64 available)
{
    const qint64 estimate = estimatedMemory(fileBytes);
    if (available <= 0 || estimate <= available / 2)
        return {};
    return QStringLiteral("Reading these files will take about %1 MB of the %2 MB of memory that are free. "
                          "Limit the time span to read less.")
        .arg(QString::number(estimate >> 20), QString::number(available >> 20));
}
