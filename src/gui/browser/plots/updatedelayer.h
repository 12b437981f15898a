#pragma once

#include <QObject>

class QTimer;

namespace Tsb {

/// Paces the repaints of one plot: a burst of changes gives one repaint at once, then at most one per period of a timer
/// that many share.
class UpdateDelayer : public QObject {
    Q_OBJECT
public:
    UpdateDelayer(QTimer *timer, QObject *parent);

    /// Whether the caller may repaint at once; if not, triggerUpdate comes at the timer's next beat.
    bool requestUpdate();
    /// The whole plot was repainted: nothing waits any more.
    void clearDeferred() { m_deferredCount = 0; }
    bool hasDeferred() const { return m_deferredCount != 0; }

Q_SIGNALS:
    void triggerUpdate();

public Q_SLOTS:
    void tick();

private:
    bool m_updatePending = false;
    int m_deferredCount = 0;
};

} // namespace Tsb
