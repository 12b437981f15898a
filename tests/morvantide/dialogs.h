#pragma once

#include <QApplication>
#include <QTimer>

#include <functional>

/// Waits for a modal dialog of that kind and does something with it.
template<class Dialog>
void withDialog(const std::function<void(Dialog &)> &act)
{
    QTimer::singleShot(0, [act] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (dialog)
            act(*dialog);
        else
            withDialog<Dialog>(act);
    });
}
