#include "gui/browser/controls/plotmenu.h"

#include <QApplication>
#include <QMouseEvent>

namespace Tsb {

void PlotMenu::mousePressEvent(QMouseEvent *event)
{
    m_armed = rect().contains(event->pos());
    QMenu::mousePressEvent(event);
}

void PlotMenu::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::NoButton && rect().contains(event->pos()))
        m_armed = true;
    QMenu::mouseMoveEvent(event);
}

void PlotMenu::mouseReleaseEvent(QMouseEvent *event)
{
    QAction *const action = rect().contains(event->pos()) ? actionAt(event->pos()) : nullptr;
    if (!m_armed || !action || !action->menu() || !action->isEnabled())
        return QMenu::mouseReleaseEvent(event);
    // The submenu may stand open above this one, and others below it.
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    action->trigger();
}

void PlotMenu::hideEvent(QHideEvent *event)
{
    m_armed = false;
    QMenu::hideEvent(event);
}

} // namespace Tsb
