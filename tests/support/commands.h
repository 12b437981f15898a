#pragma once

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>

#include <algorithm>
#include <stdexcept>

/// The one with that text; where there is none the test ends with words.
inline QAction *commandOf(const QList<QAction *> &commands, const QString &text)
{
    const auto found = std::find_if(commands.begin(), commands.end(), [&](auto *one) { return one->text() == text; });
    if (found == commands.end())
        throw std::invalid_argument(qPrintable("there is no command " + text));
    return *found;
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
