#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

/// Triggers an action that asks for a file to save, answers with that path and the first filter that holds the text,
/// and replaces a file that stands there. The result is what a message said at the end, its reason in a second line.
inline QString saveByDialog(QAction *action, const QString &path, const QString &filter = QString())
{
    QString told;
    bool isAnswered = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *const modal = QApplication::activeModalWidget();
        if (auto *const files = isAnswered ? nullptr : qobject_cast<QFileDialog *>(modal)) {
            isAnswered = true;
            if (!filter.isEmpty())
                files->selectNameFilter(files->nameFilters().filter(filter).value(0));
            files->selectFile(path);
            // Queued: a timer doesn't fire in a loop that its own slot has begun, as the next question would.
            QMetaObject::invokeMethod(files, "accept", Qt::QueuedConnection);
        } else if (auto *const box = qobject_cast<QMessageBox *>(modal)) {
            if (QAbstractButton *const yes = box->button(QMessageBox::Yes))
                return yes->click();
            told = (box->text() + '\n' + box->informativeText()).trimmed();
            box->done(QMessageBox::Ok);
        }
    });
    timer.start(1);
    action->trigger();
    // A large file is written behind a dialog.
    const bool isOver = QTest::qWaitFor([] { return !QApplication::activeModalWidget(); });
    return isOver ? told : QStringLiteral("still at it");
}
