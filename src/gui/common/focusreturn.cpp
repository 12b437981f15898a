#include "gui/common/focusreturn.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

FocusReturn::FocusReturn(QObject *parent) : QObject(parent)
{
    qGuiApp->installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *focused) {
        if (focused)
            m_owed.clear();
    });
}

bool FocusReturn::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowUnblocked)
        if (auto *window = qobject_cast<QWindow *>(watched))
            dialogHasGone(window);
    return false;
}

void FocusReturn::dialogHasGone(QWindow *before)
{
    const QWindow *focused = QGuiApplication::focusWindow();
    if (focused && (focused == before || focused->transientParent() == before))
        m_owed = before;
    if (m_owed == before) // the dialog is still there while this is told
        QMetaObject::invokeMethod(this, &FocusReturn::giveBack, Qt::QueuedConnection);
}

void FocusReturn::giveBack()
{
    const QWindow *modal = QGuiApplication::modalWindow();
    if (!m_owed || (modal && modal != m_owed))
        return; // the next dialog may go without ever having had the focus
    QWindow *window = m_owed;
    m_owed.clear();
    if (window->isVisible() && !window->isActive())
        window->requestActivate();
}
