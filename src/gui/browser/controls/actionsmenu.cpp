#include "gui/browser/controls/actionsmenu.h"

#include <QAbstractScrollArea>
#include <QMenu>

namespace Tsb {

void offerActionsMenu(QWidget *widget)
{
    widget->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(widget, &QWidget::customContextMenuRequested, widget, [widget](const QPoint &at) {
        const auto *area = qobject_cast<QAbstractScrollArea *>(widget);
        auto *menu = new QMenu(widget);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addActions(widget->actions());
        menu->popup(area ? area->viewport()->mapToGlobal(at) : widget->mapToGlobal(at));
    });
}

} // namespace Tsb
