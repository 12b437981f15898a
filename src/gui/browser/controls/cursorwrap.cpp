#include "gui/browser/controls/cursorwrap.h"

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

/// Whether a jump leaves the edge that the last one left.
bool isRepeat(int jump, int last)
{
    return jump != 0 && (jump > 0) == (last > 0) && last != 0;
}

} // namespace

QPoint cursorJumpAtScreenEdge(const QPoint &global, const QRect &screen)
{
    return {jumpOf(global.x(), screen.x(), screen.width()), jumpOf(global.y(), screen.y(), screen.height())};
}

QRect screenAt(const QPoint &global)
{
    const QScreen *screen = QGuiApplication::screenAt(global);
    return (screen ? screen : QGuiApplication::primaryScreen())->geometry();
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

void EndlessDrag::begin(const QPoint &press)
{
    m_pressPoint = press;
    m_lastJump = {};
    m_wrapping = true;
}

std::optional<QPoint> EndlessDrag::moveTo(const QPoint &position, const QPoint &global, const QRect &screen)
{
    const QPoint travel = position - m_pressPoint;
    if (!m_wrapping)
        return travel;
    const QPoint jump = cursorJumpAtScreenEdge(global, screen);
    if (m_edge == SkipsRepeats && (isRepeat(jump.x(), m_lastJump.x()) || isRepeat(jump.y(), m_lastJump.y())))
        return std::nullopt;
    m_lastJump = jump;
    if (!jump.isNull()) {
        m_wrapping = moveCursor(global + jump);
        if (m_wrapping)
            m_pressPoint += jump;
    }
    return travel;
}

void setCursorAccess(const CursorAccess &access)
{
    cursorAccess() = access;
}

} // namespace Tsb
