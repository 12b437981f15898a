#pragma once

#include <QPoint>
#include <QRect>

#include <functional>

/// A drag that may go on without end: at a screen's edge the pointer reappears near the other side.
namespace Tsb {

/// How far the pointer jumps at that place of the screen; null away from the edges.
QPoint cursorJumpAtScreenEdge(const QPoint &global, const QRect &screen);
/// The same on the screen that the place is on.
QPoint cursorJumpAtScreenEdge(const QPoint &global);

/// Moves the pointer and says whether it went there: some platforms refuse without a word.
bool moveCursor(const QPoint &global);

/// How moveCursor sets and reads the pointer, so that a test can play a platform that refuses. Empty: QCursor.
struct CursorAccess {
    std::function<void(const QPoint &)> set;
    std::function<QPoint()> get;
};
void setCursorAccess(const CursorAccess &access);

} // namespace Tsb
