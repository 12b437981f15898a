#pragma once

#include "faults/child.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "log/logger.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <memory>

class QAction;

namespace Faults {

/// An application object as the program has it. Counts what the log tells, and fails where that tells of a fault of the
/// program.
class WindowApplication : public QObject {
    Q_OBJECT
public:
    WindowApplication(int &argc, char **argv);

public Q_SLOTS:
    void ignore(const QUrl &) {}

private:
    static void judge(const Log::Entry &entry);

    QApplication m_application;
};

/// The program's window in a child, with settings of its own, driven as a user does it.
class LoadedWindow {
public:
    explicit LoadedWindow(QString folder) : m_folder(std::move(folder)) { makeWindow(); }

    QString path(const QString &name) const { return m_folder + '/' + name; }
    /// Another window, after the end of the present one.
    void makeWindow();
    /// The command of that text, without the mark of its letter.
    QAction *action(const QString &text) const;
    /// Goes through the dialog, and comes back with the read under way.
    void startOpening(const QString &folder) const;
    bool open(const QString &folder) const;
    /// Chooses those files, whole paths, in the dialog that comes up.
    static void chooseFiles(const QStringList &files);
    void invert(const QStringList &files) const;
    /// Does something with the modal dialog of that kind which comes up.
    template<class Dialog, class Act>
    static void answer(const Act &act)
    {
        QTimer::singleShot(0, [act] {
            if (auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget()))
                act(*dialog);
            else
                answer<Dialog>(act);
        });
    }

    std::unique_ptr<MorvantideMainWindow> window;

private:
    QString m_folder;
};

} // namespace Faults
