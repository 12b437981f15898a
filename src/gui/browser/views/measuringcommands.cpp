#include "gui/browser/views/measuringcommands.h"

#include "axis/timenavigator.h"
#include "gui/browser/controls/timeview.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>

#include <utility>

namespace Tsb {

MeasuringCommands::MeasuringCommands(MeasuringCursors *cursors, TimeView *axis,
                                     const std::function<RecordTime(int which)> &place, QWidget *widget)
    : QObject(widget), m_widget(widget), m_cursors(cursors), m_axis(axis), m_spanMenu(new QMenu(widget))
{
    for (int which = 0; which < MeasuringCursors::count; ++which)
        m_set[std::size_t(which)] = addAction(tr("Set cursor &%1").arg(which + 1), Qt::Key_1 + which, [=] {
            m_cursors->set(which, place(which));
            takeFocus();
        });
    m_drop = addAction(tr("&Drop cursors"), Qt::Key_Escape, [this] { m_cursors->drop(); });
    m_zoom = addAction(tr("&Zoom to span between cursors"), 0, [this] { zoomTo(m_cursors->span()); });
    m_export = addAction(tr("E&xport span between cursors..."), 0, [this] {
        const auto span = m_cursors->span();
        Q_EMIT exportRequested(span.first, span.second);
    });
    widget->addActions(m_actions);
    widget->installEventFilter(this);

    m_spanMenu->setObjectName(QStringLiteral("spanMenu"));
    m_spanMenu->addAction(tr("&Zoom to span"), this, [this] { zoomTo(m_span); });
    m_spanMenu->addAction(tr("Set &cursors at its ends"), this, [this] {
        m_cursors->set(0, m_span.first);
        m_cursors->set(1, m_span.second);
    });
    m_spanMenu->addAction(tr("&Export span..."), this, [this] { Q_EMIT exportRequested(m_span.first, m_span.second); });
    connect(m_spanMenu, &QMenu::aboutToHide, m_axis, &TimeView::clearMarkedSpan);
    connect(m_axis, &TimeView::spanMarked, this, &MeasuringCommands::showSpanMenu);
    connect(m_cursors, &MeasuringCursors::changed, this, &MeasuringCommands::updateActions);
    updateActions();
}

template<typename Slot>
QAction *MeasuringCommands::addAction(const QString &text, int key, Slot slot)
{
    auto *const action = new QAction(text, this);
    if (key != 0) {
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut); // in tables a number begins a search
    }
    connect(action, &QAction::triggered, this, slot);
    m_actions << action;
    return action;
}

/// A number is for the plots where the pointer is over them, whatever has the focus.
bool MeasuringCommands::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
        for (QAction *action : m_set)
            action->setShortcutContext(event->type() == QEvent::Enter ? Qt::WindowShortcut
                                                                      : Qt::WidgetWithChildrenShortcut);
    }
    return QObject::eventFilter(watched, event);
}

/// So that Esc means the cursors, once they were set while the focus was elsewhere in the window.
void MeasuringCommands::takeFocus()
{
    if (m_widget->isAncestorOf(QApplication::focusWidget()) || !m_widget->underMouse())
        return;
    QWidget *target = m_widget->childAt(m_widget->mapFromGlobal(QCursor::pos()));
    while (target && target != m_widget && (target->focusPolicy() & Qt::ClickFocus) == 0)
        target = target->parentWidget();
    (target ? target : m_widget)->setFocus(Qt::MouseFocusReason);
}

void MeasuringCommands::setEnabled(bool on)
{
    m_enabled = on;
    updateActions();
}

void MeasuringCommands::updateActions()
{
    for (QAction *action : m_set)
        action->setEnabled(m_enabled);
    m_drop->setEnabled(m_enabled && m_cursors->areAny()); // its key has another meaning without cursors
    m_zoom->setEnabled(m_enabled && m_cursors->areBoth());
    m_export->setEnabled(m_enabled && m_cursors->areBoth());
}

void MeasuringCommands::zoomTo(const std::pair<RecordTime, RecordTime> &span)
{
    m_axis->fitIntoView(span.first, span.second);
}

void MeasuringCommands::showSpanMenu(RecordTime begin, RecordTime end, const QPoint &at)
{
    m_span = {begin, end};
    m_spanMenu->popup(at);
}

} // namespace Tsb
