#pragma once

#include <QMenu>

/// A menu that stays open while its entries are checked, so that several can be in a row.
class CheckMenu : public QMenu {
    Q_OBJECT
public:
    using QMenu::QMenu;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QAction *m_pressed = nullptr; ///< compared only
};
