#pragma once

#include "gui/frame/menumnemonics.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "log/logger.h"
#include "support/files.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
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

/// The program's window with settings of its own, driven through its dialogs, and a folder for what a test writes.
class WindowTest : public testing::Test {
    QTemporaryDir m_folder; // outlives the window, which writes its settings at its end

protected:
    WindowTest() { makeWindow(); }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    void write(const QString &name, const QByteArray &text) const { writeFile(path(name), text); }
    QByteArray contentOf(const QString &name) const { return ::contentOf(path(name)); }

    QString settingsFile() const { return path("morvantide.conf"); }
    void makeWindow() { window = std::make_unique<MorvantideMainWindow>(settingsFile()); }
    /// Without the mark of its letter.
    QAction *action(const QString &text) const
    {
        for (QAction *one : window->findChildren<QAction *>())
            if (withoutMnemonic(one->text()) == text)
                return one;
        ADD_FAILURE() << "no command " << text.toStdString();
        return nullptr;
    }
    /// Goes through the dialog, and comes back with the read under way.
    void startOpening(const QString &folder, const QVariantMap &choice = {})
    {
        QVariantMap all{{"folderName", folder}, {"variant", "block"}, {"legacyFiles", false}};
        for (auto it = choice.begin(); it != choice.end(); ++it)
            all[it.key()] = *it;
        withDialog<DataChooserDialog>([&all](DataChooserDialog &dialog) {
            dialog.setChoice(all);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        window->showDataDirChoice();
    }
    void waitForRead()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window->isReading(); }, 60000));
    }
    /// The text of the log dock. Entries come with the event loop and in order, so that a mark tells that all are
    /// there.
    QString log() const
    {
        static int marks = 0;
        const QString mark = QString("mark %1.").arg(++marks);
        Log::Logger("test").log(Log::Info, mark);
        const auto *edit = window->findChild<QDockWidget *>("logDock")->findChild<QPlainTextEdit *>();
        EXPECT_TRUE(QTest::qWaitFor([&] { return edit->toPlainText().contains(mark); }, 30000));
        return edit->toPlainText().remove(QRegularExpression("\\[[0-9:.]+\\] mark [0-9]+\\.\\n?"));
    }

    std::unique_ptr<MorvantideMainWindow> window;
};
