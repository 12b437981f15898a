#include "gui/common/dataexport/checkmenu.h"

#include <QKeyEvent>

void CheckMenu::mousePressEvent(QMouseEvent *event)
{
    m_pressed = actionAt(event->pos());
    QMenu::mousePressEvent(event);
}

void CheckMenu::mouseReleaseEvent(QMouseEvent *event)
{
    QAction *const action = actionAt(event->pos());
    const bool isClick = action && action == m_pressed && action->isEnabled() && !action->isSeparator();
    m_pressed = nullptr;
    if (isClick)
        action->trigger();
    else
        QMenu::mouseReleaseEvent(event);
}

void CheckMenu::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isChoice = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isChoice && activeAction() && activeAction()->isEnabled())
        activeAction()->trigger();
    else
        QMenu::keyPressEvent(event);
}
