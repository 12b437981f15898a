#include "gui/browser/controls/plaintooltip.h"

#include <QTextDocument>

namespace Tsb {

QString plainToolTip(const QString &text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return QLatin1String("<qt>") + text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")) +
           QLatin1String("</qt>");
}

} // namespace Tsb
