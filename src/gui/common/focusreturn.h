#pragma once

#include <QObject>
#include <QPointer>

class QWindow;

/// Gives a window the keyboard focus back when the last modal dialog before it has gone. Most window managers do so by
/// themselves; where there is none, no key would reach the window any more. A window that the user has left for another
/// program is not brought back. One object serves all windows of the program.
class FocusReturn : public QObject {
    Q_OBJECT
public:
    explicit FocusReturn(QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void dialogHasGone(QWindow *before);
    void giveBack();

    /// Its dialog went with the focus, and no window of ours has got that since.
    QPointer<QWindow> m_owed;
};
