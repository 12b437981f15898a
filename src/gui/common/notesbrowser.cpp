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

/// A link at the very start would hold the focus: the base finds it anew each time when it looks for one before it.
bool NotesBrowser::focusNextPrevChild(bool next)
{
    const QTextCursor before = textCursor();
    const bool moved = QTextBrowser::focusNextPrevChild(next);
    if (next || !hasFocus() || !before.hasSelection() || textCursor().selectionStart() != before.selectionStart())
        return moved;
    QTextCursor none = before;
    none.clearSelection();
    setTextCursor(none);
    return QWidget::focusNextPrevChild(next); // NOLINT(bugprone-parent-virtual-call): beyond what the text does
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
