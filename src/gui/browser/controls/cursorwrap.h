#pragma once

#include <QPoint>
#include <QRect>

#include <functional>
#include <optional>

/// A drag that may go on without end: at a screen's edge the pointer reappears near the other side.
namespace Tsb {

/// The way that the pointer jumps at that place of the screen; null away from the edges.
QPoint cursorJumpAtScreenEdge(const QPoint &global, const QRect &screen);
/// The screen of a place.
QRect screenAt(const QPoint &global);

/// Moves the pointer. False if it isn't there afterwards: some platforms refuse without a word.
bool moveCursor(const QPoint &global);

/// A drag whose pointer steps over the screen's edges.
class EndlessDrag {
public:
    /// The treatment of further moves at the edge just left. They may be older than the jump, and are skipped then.
    enum Edge { SkipsRepeats, TakesRepeats };

    explicit EndlessDrag(Edge edge) : m_edge(edge) {}

    /// The press point, in the widget.
    void begin(const QPoint &press);
    const QPoint &pressPoint() const { return m_pressPoint; }
    /// The way of the pointer since the press, without its jumps over an edge; none for a move that is skipped. May
    /// move the pointer; if that fails, the rest of the drag does without jumps.
    std::optional<QPoint> moveTo(const QPoint &position, const QPoint &global, const QRect &screen);

private:
    Edge m_edge;
    QPoint m_pressPoint; ///< moved along when the pointer steps over an edge
    QPoint m_lastJump;
    bool m_wrapping = true;
};

/// Stands in for QCursor in moveCursor, so that a test can play a platform that refuses. An empty one is QCursor.
struct CursorAccess {
    std::function<void(const QPoint &)> set;
    std::function<QPoint()> get;
};
void setCursorAccess(const CursorAccess &access);

} // namespace Tsb
