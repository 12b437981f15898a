#include "gui/common/notesbrowser.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTextCursor>

NotesBrowser::NotesBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
}

/// The link that the keyboard stands on: Tab selects its text.
QString NotesBrowser::chosenLink() const
{
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection())
        return {};
    cursor.setPosition(cursor.selectionEnd());
    return cursor.charFormat().anchorHref();
}

void NotesBrowser::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const QString address = byMouse ? anchorAt(event->pos()) : chosenLink();
    QMenu *const menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!address.isEmpty())
        Q_EMIT linkMenuRequested(menu, address);
    menu->popup(event->globalPos());
    event->accept();
}
