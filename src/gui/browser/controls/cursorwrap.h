#pragma once

#include <QPoint>
#include <QRect>

#include <functional>
#include <optional>

/// A drag that may go on without end: at a screen's edge the pointer reappears near the other side.
namespace Tsb {

/// How far the pointer jumps at that place of the screen; null away from the edges.
QPoint cursorJumpAtScreenEdge(const QPoint &global, const QRect &screen);
/// The screen of a place.
QRect screenAt(const QPoint &global);

/// Moves the pointer and says whether it went there: some platforms refuse without a word.
bool moveCursor(const QPoint &global);

/// A drag whose pointer steps over the screen's edges.
class EndlessDrag {
public:
    /// What else arrives from the edge just left: nothing where the pointer may not have gone yet, or everything.
    enum Edge { SkipsRepeats, TakesRepeats };

    explicit EndlessDrag(Edge edge) : m_edge(edge) {}

    /// The press point, in the widget.
    void begin(const QPoint &press);
    const QPoint &pressPoint() const { return m_pressPoint; }
    /// How far the pointer came since the press, steps over an edge left out; none for a move that counts for nothing.
    /// May move the pointer; where that fails, the rest of the drag does without.
    std::optional<QPoint> moveTo(const QPoint &position, const QPoint &global, const QRect &screen);

private:
    Edge m_edge;
    QPoint m_pressPoint; ///< moved along when the pointer steps over an edge
    QPoint m_lastJump;
    bool m_wrapping = true;
};

/// How moveCursor sets and reads the pointer, so that a test can play a platform that refuses. Empty: QCursor.
struct CursorAccess {
    std::function<void(const QPoint &)> set;
    std::function<QPoint()> get;
};
void setCursorAccess(const CursorAccess &access);

} // namespace Tsb
