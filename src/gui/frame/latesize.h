#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

class QWidget;

/// Waits for the size of a window that is to be maximized: the desktop gives it only some time after the window was
/// shown, or asked for it. The window outlives it.
class LateSize : public QObject {
public:
    explicit LateSize(QWidget &window);

    /// Calls `adapt` after the window got another size, until a second after now or, if it is hidden, after it is
    /// shown. It replaces what an earlier call gave. Windows that aren't maximized have their size already, and nothing
    /// is called.
    void await(std::function<void()> adapt);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_window;
    std::function<void()> m_adapt;
    QTimer m_settled;  ///< until the layout has taken the size
    QTimer m_patience; ///< of a window that is seen
};
