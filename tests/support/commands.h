#pragma once

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>

#include <algorithm>

/// The one with that text; null where there is none.
inline QAction *commandOf(const QList<QAction *> &commands, const QString &text)
{
    const auto found = std::find_if(commands.begin(), commands.end(), [&](auto *one) { return one->text() == text; });
    return found == commands.end() ? nullptr : *found;
}

/// The texts of the context menu that opens over the widget, which is closed again; none where none opens.
inline QStringList menuOver(QWidget *widget)
{
    QStringList texts;
    QTimer::singleShot(0, [&] {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
            for (const QAction *action : menu->actions())
                texts << action->text();
            menu->close();
        }
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, widget->rect().center());
    QApplication::sendEvent(widget, &event);
    QApplication::processEvents();
    return texts;
}
