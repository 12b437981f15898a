#include "gui/common/logtext.h"

namespace LogText {
namespace {

constexpr int longestMessage = 20000;
constexpr int indent = 15; // the width of "[hh:mm:ss.zzz] "

QString shownMessage(const QString &message)
{
    // What a file says in a single line can be megabytes, and laying that out would take minutes.
    QString text = message.left(longestMessage).toHtmlEscaped();
    if (message.size() > longestMessage)
        text += QChar(0x2026);
    return text.replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(indent, QLatin1Char(' ')));
}

} // namespace

bool isShown(const Log::Entry &entry)
{
    if (entry.level == Log::Debug)
        return false;
    if (entry.level > Log::Notice && entry.source.startsWith(QLatin1String("instrument.dev.")))
        return false;
    return !entry.source.startsWith(QLatin1String("qt."));
}

bool isOfReading(const Log::Entry &entry)
{
    return entry.level == Log::Info && entry.source == QLatin1String("filereader") &&
           entry.message.startsWith(QLatin1String("Reading "));
}

QString html(const Log::Entry &entry, bool withDate)
{
    const QString time =
        entry.time.toString(withDate ? QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz") : QStringLiteral("hh:mm:ss.zzz"));
    const QString level = Log::levelName(entry.level);
    const QString message = shownMessage(entry.message);
    if (entry.level > Log::Error)
        return QStringLiteral("<pre class='log-%2'><b>[%1]</b> %3</pre>").arg(time, level, message);
    return QStringLiteral("<pre class='log-%2'><b>[%1 %2]</b> %3</pre>").arg(time, level, message);
}

int lineCount(const QString &html)
{
    return 1 + html.count(QLatin1Char('\n'));
}

} // namespace LogText
