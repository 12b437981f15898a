#pragma once

#include <QObject>

class QAction;
class QMainWindow;

/// What keys do in a window whatever it shows: full screen, the way to the filter of a dock, and the page that lists
/// all keys and gestures. The actions' keys work once they stand in a menu of the window, which outlives this.
class WindowKeys : public QObject {
    Q_OBJECT
public:
    explicit WindowKeys(QMainWindow *window);

    QAction *fullScreenAction() const { return m_fullScreen; }
    QAction *filterAction() const { return m_filter; }
    QAction *pageAction() const { return m_page; }

    /// Names its key in the tool tip of each of the window's actions that has an icon and a key. To be called when all
    /// of them have their keys.
    void nameKeysInToolTips();

    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    /// Puts the focus into the filter line of the dock that has the focus, or else of the first dock that has such a
    /// line ("filterLine"), those in sight before others; one that is hidden comes up.
    void goToFilter();
    void showPage();

private:
    QMainWindow *m_window;
    QAction *m_fullScreen;
    QAction *m_filter;
    QAction *m_page;
};
