#include "gui/common/menubutton.h"

#include <QApplication>
#include <QCursor>

MenuButton::MenuButton(QWidget *parent) : QToolButton(parent)
{
    setAutoRaise(true);
    setPopupMode(InstantPopup);
}

void MenuButton::mousePressEvent(QMouseEvent *event)
{
    QToolButton::mousePressEvent(event); // returns when the menu has closed
    if (rect().contains(mapFromGlobal(QCursor::pos())))
        return;
    // Where the pointer went while the menu had it is told to nobody: the button would look as if it were still there.
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(this, &leave);
    update();
}
