#pragma once

#include <QTimer>

#include <functional>

/// Work of the main thread that is done in slices between the turns of the event loop, so that however much there is
/// the window isn't kept waiting.
class SlicedWork {
public:
    /// `step` does a little and tells whether something is left; a slice is as many steps as begin within that time.
    /// `done` is called behind the last slice, and may start anew or delete the owner.
    SlicedWork(int longestSliceMs, std::function<bool()> step, std::function<void()> done = {});

    /// From the next turn of the event loop on.
    void start() { m_timer.start(); }
    /// Leaves the rest undone.
    void stop() { m_timer.stop(); }

private:
    QTimer m_timer;
};
