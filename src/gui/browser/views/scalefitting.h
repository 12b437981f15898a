#pragma once

#include <QObject>
#include <QTimer>

namespace Tsb {

class ViewStack;

/// When the scales of a stack's views are fitted to the values in sight: at a command, for a setup that told none, and
/// as values come in. Main thread only.
class ScaleFitting : public QObject {
    Q_OBJECT
public:
    /// The stack must outlive it.
    explicit ScaleFitting(const ViewStack &stack, QObject *parent = nullptr);

    /// Whether scales that are as they were fitted last grow with the values that come into sight. Off at first.
    void setGrowing(bool on) { m_isGrowing = on; }

    void fitAll();
    /// Those of the views that a setup told no limits: a setup that is written by hand needn't know them. All that the
    /// picture needs is done by then.
    void fitUntold();
    /// Events that new views posted would come behind the painting that the first of them asked for, and have most of
    /// it done once more: they are handled now.
    static void settleBeforePainting();

public Q_SLOTS:
    /// The store has other values. Scales grow a moment later, once for many changes.
    void valuesChanged();

private:
    void grow();

    const ViewStack &m_stack;
    bool m_isGrowing = false;
    QTimer m_growTimer;
};

} // namespace Tsb
