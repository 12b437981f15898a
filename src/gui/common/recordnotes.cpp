#include "gui/common/recordnotes.h"

namespace {

constexpr int longestToolTip = 1000; // characters
constexpr int mostToolTipLines = 20;

} // namespace

QString RecordNotes::toolTip(const QString &text)
{
    QString shown = text.left(longestToolTip);
    int end = -1;
    for (int line = 0; line < mostToolTipLines && (line == 0 || end >= 0); ++line)
        end = shown.indexOf(QLatin1Char('\n'), end + 1);
    if (end >= 0)
        shown.truncate(end);
    if (shown.size() < text.size())
        shown += QStringLiteral(" ...");
    // As rich text, which wraps long lines.
    return QLatin1String("<qt>") + shown.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")) +
           QLatin1String("</qt>");
}
