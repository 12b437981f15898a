#pragma once

#include <QObject>

#include <functional>

class QDockWidget;

/// Spares a dock the work on contents that nobody sees: closed, in a tab behind others, or in a window that isn't
/// shown. Such contents stay stale, and are refreshed once when they come into sight. Belongs to the dock; main thread
/// only.
class SeenContents : public QObject {
    Q_OBJECT
public:
    /// `refresh` brings the contents up to date. It may call setStale().
    SeenContents(QDockWidget *dock, std::function<void()> refresh);

    /// Whether any pixel of the contents may show on the screen.
    bool areSeen() const;
    bool areStale() const { return m_areStale; }
    /// Refreshes at once where the contents are seen, else when they are.
    void setStale();
    /// Refreshes at once, seen or not.
    void refreshNow();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refreshIfSeen();
    void mayHaveComeIntoSight();

    QDockWidget *m_dock;
    std::function<void()> m_refresh;
    bool m_areStale = false;
};
