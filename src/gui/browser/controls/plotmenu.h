#pragma once

#include <QMenu>

namespace Tsb {

/// A menu in which an action with a submenu can be chosen itself too: a click triggers it, resting on it opens the
/// submenu.
class PlotMenu : public QMenu {
    Q_OBJECT
public:
    using QMenu::QMenu;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool m_armed = false; ///< the button went down or came in over this menu, not over the button that opened it
};

} // namespace Tsb
