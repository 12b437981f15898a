#include "gui/common/tsb/cursorwrap.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace Tsb {

namespace {

constexpr int edge = 5;
constexpr int landing = 10; ///< what a jump leaves of the screen's size
constexpr int tolerance = 2;

int jumpOf(int position, int start, int size)
{
    if (size <= 2 * landing)
        return 0;
    if (position < start + edge)
        return size - landing;
    if (position > start + size - edge)
        return landing - size;
    return 0;
}

CursorAccess &cursorAccess()
{
    static CursorAccess access;
    return access;
}

} // namespace

QPoint cursorJumpAtScreenEdge(const QPoint &global, const QRect &screen)
{
    return {jumpOf(global.x(), screen.x(), screen.width()), jumpOf(global.y(), screen.y(), screen.height())};
}

QPoint cursorJumpAtScreenEdge(const QPoint &global)
{
    QScreen *screen = QGuiApplication::screenAt(global);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? cursorJumpAtScreenEdge(global, screen->geometry()) : QPoint();
}

bool moveCursor(const QPoint &global)
{
    const CursorAccess &access = cursorAccess();
    if (access.set)
        access.set(global);
    else
        QCursor::setPos(global);
    const QPoint off = (access.get ? access.get() : QCursor::pos()) - global;
    return off.manhattanLength() <= 2 * tolerance;
}

void setCursorAccess(const CursorAccess &access)
{
    cursorAccess() = access;
}

} // namespace Tsb
