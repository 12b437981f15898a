#include "gui/browser/views/arrangingcommands.h"

#include "gui/browser/controls/resizer.h"
#include "gui/browser/views/view.h"
#include "gui/browser/views/viewholder.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace Tsb {

namespace {

constexpr int heightStep = 20; // pixels

} // namespace

ArrangingCommands::ArrangingCommands(ViewHolder *holder, QWidget *parent)
    : QObject(parent), m_holder(holder), m_menu(new QMenu(tr("Arrange plot"), parent))
{
    const auto mover = [this](int places) { return [=](View *view) { m_holder->moveView(view, places); }; };
    const auto resizer = [this](int steps) { return [=](View *view) { resize(view, steps); }; };
    add(tr("Move plot up"), Qt::Key_Up, mover(-1));
    add(tr("Move plot down"), Qt::Key_Down, mover(1));
    add(tr("Make plot higher"), Qt::Key_PageDown, resizer(1));
    add(tr("Make plot lower"), Qt::Key_PageUp, resizer(-1));
    parent->addActions(m_menu->actions());
}

template<typename Arrange>
void ArrangingCommands::add(const QString &text, int key, Arrange arrange)
{
    auto *const action = new QAction(text, this);
    action->setShortcut(Qt::CTRL + Qt::SHIFT + key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setStatusTip(tr("The plot that has the keyboard focus"));
    connect(action, &QAction::triggered, this, [this, arrange] {
        if (View *const view = focusedView()) {
            arrange(view);
            Q_EMIT arranged(view);
        }
    });
    m_menu->addAction(action);
}

QAction *ArrangingCommands::menuAction() const
{
    return m_menu->menuAction();
}

View *ArrangingCommands::focusedView() const
{
    QWidget *widget = QApplication::focusWidget();
    while (widget && widget->parentWidget() != m_holder)
        widget = widget->parentWidget();
    return dynamic_cast<View *>(widget);
}

void ArrangingCommands::resize(View *view, int steps)
{
    if (auto *const grip = view->findChild<Resizer *>())
        grip->setTargetHeight(view->height() + steps * heightStep);
}

} // namespace Tsb
