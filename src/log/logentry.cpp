#include "log/logentry.h"

namespace Log {

namespace {

struct LevelText {
    const char *name;
    char letter;
};
constexpr LevelText levels[] = {{"emergency", 'G'}, {"alert", 'A'},  {"critical", 'C'}, {"error", 'E'},
                                {"warning", 'W'},   {"notice", 'N'}, {"info", 'I'},     {"debug", 'D'}};
constexpr int levelCount = int(sizeof levels / sizeof levels[0]);

} // namespace

QString levelName(int level)
{
    return QLatin1String(level >= 0 && level < levelCount ? levels[level].name : "unknown");
}

int levelFromName(const QString &name, int fallback)
{
    for (int level = 0; level < levelCount; ++level) {
        if (name == QLatin1String(levels[level].name))
            return level;
    }
    return fallback;
}

QByteArray consoleLine(const Entry &entry)
{
    QByteArray line = "[" + entry.time.toString(QStringLiteral("hh:mm:ss.zzz")).toUtf8() + ' ';
    if (entry.level >= 0 && entry.level < levelCount)
        line += levels[entry.level].letter;
    line += "] ";
    // 32 blanks, though the text before the message has 17 characters: so these lines are known.
    line +=
        QString(entry.message).replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(32, QLatin1Char(' '))).toUtf8();
    QString source = entry.source;
    if (source.startsWith(QLatin1String("qt.")))
        source = source.section(QLatin1Char(':'), -2);
    return line + " [" + source.leftJustified(16).toUtf8() + "]\n";
}

bool isRepeat(const Entry &before, const Entry &entry)
{
    return entry.level == before.level && entry.source == before.source && entry.time.date() == before.time.date() &&
           entry.message == before.message;
}

} // namespace Log
