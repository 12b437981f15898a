#pragma once

#include "faults/loadedwindow.h"
#include "faults/monkeyevent.h"
#include "support/growingfolder.h"

#include <QPointer>

#include <deque>
#include <functional>

class QFileDialog;
class QMessageBox;
class QWidget;
class QWindow;

namespace Faults {

/// Hands events to the program's window, or to what stands before it, one in each turn of the event loop, nested ones
/// included. Mouse and keys come from the window system's side. Main thread only.
class MonkeyHand {
public:
    /// The data folders are "demo", "other" and "growing"; inverters lie in "inverters".
    MonkeyHand(LoadedWindow &window, GrowingFolder &growing, MonkeyEvents events);

    /// Until all events are through, over the window's end and another one.
    void run();

private:
    void next();
    void act(const MonkeyEvent &event);
    void checkState() const;

    QWidget *target(const MonkeyEvent &event) const;
    /// A place in one of the widgets of the target, as seen from the target.
    QPoint placeIn(QWidget *target, const MonkeyEvent &event) const;
    void sendKey(const MonkeyEvent &event);
    void typeText(const MonkeyEvent &event);
    void clickAt(const MonkeyEvent &event);
    void drag(const MonkeyEvent &event);
    void turn(const MonkeyEvent &event);
    void giveCommand(const MonkeyEvent &event);
    void startWork(const MonkeyEvent &event);
    void moveDock(const MonkeyEvent &event);
    void resize(const MonkeyEvent &event);

    void answer(const MonkeyEvent &event);
    void answerFileDialog(QFileDialog &dialog, const MonkeyEvent &event);
    bool answerOwnDialog(QWidget &dialog, const MonkeyEvent &event);
    void fillExport(const MonkeyEvent &event);

    LoadedWindow &m_window;
    GrowingFolder &m_growing;
    const MonkeyEvents m_events;
    std::size_t m_next = 0;
    std::deque<std::function<void()>> m_steps; ///< of a drag under way
    int m_depth = 0;                           ///< acts that haven't come back
    bool m_isOver = false;
};

} // namespace Faults
