#include "gui/browser/drawing/cursorline.h"

#include <QColor>
#include <QPainter>
#include <QRect>

namespace Tsb {

namespace {

constexpr int dash = 6, period = 10; ///< pixels

const QColor lineColor(0, 0, 0), rimColor(255, 255, 255, 200);

} // namespace

void drawCursorLine(QPainter &painter, const QRect &contents, int column, int which)
{
    painter.fillRect(column - cursorLineMargin, contents.top(), 2 * cursorLineMargin + 1, contents.height(), rimColor);
    if (which == 0)
        return painter.fillRect(column, contents.top(), 1, contents.height(), lineColor);
    for (int y = contents.top(); y <= contents.bottom(); y += period)
        painter.fillRect(QRect(column, y, 1, dash) & contents, lineColor);
}

} // namespace Tsb
