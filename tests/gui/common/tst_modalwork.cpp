#include "gui/common/modalwork.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QWidget>

#include <gtest/gtest.h>

#include <atomic>

namespace {

struct Window {
    QWidget widget;
    std::unique_ptr<ModalWork> work =
        std::make_unique<ModalWork>(&widget, ModalWork::Words{"working", "Working", "Stopping"});
    QStringList ends;
    std::atomic<bool> mayEnd{false}, hasSeenCancel{false};

    Window() { widget.show(); }
    /// Works until it may end, or is cancelled.
    void start()
    {
        work->start(
            [this](ModalWork::Monitor &monitor) {
                monitor.tell("a line");
                while (!mayEnd && !monitor.isCancelled())
                    QThread::msleep(1);
                hasSeenCancel = monitor.isCancelled();
            },
            [this](bool isCancelled) { ends << (isCancelled ? "cancelled" : "done"); });
    }
    bool waitForEnd() const
    {
        return QTest::qWaitFor([this] { return !work->isRunning(); });
    }
    static QWidget *dialog() { return QApplication::activeModalWidget(); }
};

} // namespace

TEST(ModalWork, ShortWorkEndsBeforeTheCallDoes)
{
    Window w;
    w.mayEnd = true;
    for (int i = 0; i < 3; ++i)
        w.start();
    EXPECT_EQ(w.ends, (QStringList{"done", "done", "done"}));
    EXPECT_FALSE(w.dialog());
}

TEST(ModalWork, LongWorkHasADialogUntilItEnds)
{
    Window w;
    w.start();
    ASSERT_TRUE(w.dialog());
    EXPECT_EQ(w.dialog()->windowTitle(), "Working");
    EXPECT_EQ(w.dialog()->findChild<QLabel *>()->text(), "a line");
    EXPECT_EQ(w.ends, QStringList());
    w.mayEnd = true;
    ASSERT_TRUE(w.waitForEnd());
    EXPECT_EQ(w.ends, QStringList("done"));
    EXPECT_FALSE(w.dialog());
}

TEST(ModalWork, ButtonAndEscapeCancel)
{
    for (const bool isKey : {false, true}) {
        Window w;
        w.start();
        ASSERT_TRUE(w.dialog());
        const auto *label = w.dialog()->findChild<QLabel *>();
        if (isKey)
            QTest::keyClick(w.dialog(), Qt::Key_Escape);
        else
            w.dialog()->findChild<QPushButton *>()->click();
        EXPECT_EQ(label->text(), "Stopping") << "the dialog stands until the work has ended";
        ASSERT_TRUE(w.waitForEnd());
        EXPECT_EQ(w.ends, QStringList("cancelled"));
        EXPECT_FALSE(w.dialog());
    }
}

TEST(ModalWork, EndsWithItsOwnerOrItsWindow)
{
    Window w;
    w.start();
    w.work.reset();
    EXPECT_TRUE(w.hasSeenCancel);
    EXPECT_EQ(w.ends, QStringList()) << "nobody is told any more";

    auto *const other = new QWidget;
    auto *const child = new QWidget(other);
    auto *const work = new ModalWork(child, {"working", "Working", "Stopping"});
    work->setParent(child);
    std::atomic<bool> isCancelled{false};
    work->start(
        [&](ModalWork::Monitor &monitor) {
            while (!monitor.isCancelled())
                QThread::msleep(1);
            isCancelled = true;
        },
        [](bool) { ADD_FAILURE(); });
    delete other;
    EXPECT_TRUE(isCancelled);
    EXPECT_FALSE(Window::dialog());
}
