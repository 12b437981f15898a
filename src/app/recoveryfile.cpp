#include "app/recoveryfile.h"

#include "util/regularfile.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace {

const char heading[] = "# Quilvane recovery file v1";
const char ownArguments[] = "\n--morvantide\n";

} // namespace

QString RecoveryFile::name(qint64 processId, qint64 milliseconds)
{
    return QStringLiteral("quilvane-%1-%2.recovery").arg(QString::number(processId), QString::number(milliseconds));
}

void RecoveryFile::write(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(heading);
    file.write(ownArguments);
}

std::optional<QStringList> RecoveryFile::argumentsIn(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.takeFirst() != QLatin1String(heading))
        return std::nullopt;
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast(); // what stands behind the last line feed, and no empty argument before it
    return lines;
}

std::optional<QStringList> RecoveryFile::take(const QString &path)
{
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.lock())
        return std::nullopt;
    if (QFileInfo::exists(path) && !whyNotRegularFile(path).isNull())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) // makes a missing one, which then fails as an empty one
        return std::nullopt;
    const QString text = QString::fromUtf8(file.readAll());
    file.remove();
    return argumentsIn(text);
}
