#include "gui/browser/controls/gototimedialog.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/morvantide/dayfolder.h"
#include "gui/morvantide/readprogressdialog.h"
#include "gui/morvantide/windowtest.h"

#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QProcess>
#include <QThread>
#include <QToolButton>

// Keys reach the window that has the focus as the window system sees it: they are typed from outside, on a real
// display.

namespace {

constexpr int patience = 60000; // ms
constexpr int retypeMs = 2000;

/// Types the key on the display, as a person would.
void type(const char *key)
{
    ASSERT_EQ(QProcess::execute("xdotool", {"key", key}), 0) << key;
}

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patience);
}

class KeyFocus : public WindowTest {
protected:
    KeyFocus() { data.writeDay(1); }

    void SetUp() override { ASSERT_EQ(QGuiApplication::platformName(), "xcb") << "run it by underdisplay"; }
    void waitForKeysIn(const QWidget *wanted, const std::string &when)
    {
        ASSERT_TRUE(waitUntil([wanted] { return wanted->isActiveWindow(); })) << "no key arrives " << when;
    }
    /// Accepts the data dialog by a key. Comes back with the read under way.
    void openByKey()
    {
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&poll] {
            const QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isActiveWindow())
                return;
            poll.stop();
            type("Return");
        });
        poll.start(5);
        window->showDataDirChoice({{"folderName", data.path()}, {"variant", "block"}, {"legacyFiles", false}});
    }
    void expectKeysWork(const std::string &when)
    {
        // Some keys may be lost while the window manager gives the focus from one window to the next, not all.
        const auto isFollowing = [this] { return window->isFollowingLast(); };
        QElapsedTimer clock;
        clock.start();
        while (!isFollowing() && clock.elapsed() < patience) {
            type("End");
            (void)QTest::qWaitFor(isFollowing, retypeMs);
        }
        ASSERT_TRUE(isFollowing()) << "no key arrives " << when;
        const auto last = window->shownRecord();
        type("Left");
        ASSERT_TRUE(waitUntil([&] { return window->shownRecord() != last; })) << when;
        type("ctrl+g");
        ASSERT_TRUE(waitUntil([&] { return window->findChild<Tsb::GoToTimeDialog *>(); })) << when;
        ASSERT_NO_FATAL_FAILURE(waitForKeysIn(window->findChild<Tsb::GoToTimeDialog *>(), when));
        type("Escape");
        ASSERT_TRUE(waitUntil([] { return !QApplication::activeModalWidget(); })) << when;
        waitForKeysIn(window.get(), "behind a dialog " + when);
    }

    DayFolder data;
};

} // namespace

TEST_F(KeyFocus, KeysReachTheWindowAfterAReadThatIsOverAtOnce)
{
    for (const int busyMs : {0, 40}) // of the main thread, before it hears what became of the progress dialog
        for (int start = 0; start < 8; ++start) {
            makeWindow();
            window->show();
            openByKey();
            QThread::msleep(busyMs);
            waitForRead();
            expectKeysWork("start " + std::to_string(start) + ", busy for " + std::to_string(busyMs) + " ms");
            if (HasFatalFailure())
                return;
        }
}

TEST_F(KeyFocus, KeysReachADialogAndTheWindowBehindADialog)
{
    window->show();
    QTimer::singleShot(0, [this] {
        QWidget *chooser = QApplication::activeModalWidget();
        waitForKeysIn(chooser, "in the data dialog");
        withDialog<QFileDialog>([this](QFileDialog &folders) {
            waitForKeysIn(&folders, "in the folder dialog");
            type("Escape");
        });
        chooser->findChild<QToolButton *>("chooseFolderButton")->click();
        waitForKeysIn(chooser, "behind the folder dialog");
        type("Escape");
    });
    window->showDataDirChoice();
    waitForKeysIn(window.get(), "behind the data dialog");
}

TEST_F(KeyFocus, KeysGoToACommentUntilReturn)
{
    window->show();
    openByKey();
    waitForRead();
    waitForKeysIn(window.get(), "behind the read");
    window->showRecord(window->datastore()->at(5));
    QTest::qWait(1);
    auto *line = window->findChild<QLineEdit *>("commentEdit");
    line->setFocus();
    for (const char *key : {"a", "c", "Left", "b", "End", "d"})
        type(key);
    ASSERT_TRUE(waitUntil([line] { return line->text() == "abcd"; })) << line->text().toStdString();
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(5));
    EXPECT_FALSE(window->isFollowingLast());
    type("Return");
    type("Right");
    ASSERT_TRUE(waitUntil([this] { return window->shownRecord() == window->datastore()->at(6); }));
    EXPECT_TRUE(::contentOf(data.filePath("20190101-block.comments")).endsWith("\tabcd\n"));
}

TEST_F(KeyFocus, KeysGoToTheExportDialogBehindItsProgress)
{
    window->show();
    openByKey();
    waitForRead();
    window->showExportData();
    auto *const dialog = window->findChild<DataExportDialog *>();
    dialog->setSetup({{"general", QVariantMap{{"output_file", path("table.txt")}}}});
    waitForKeysIn(dialog, "in the export dialog");
    type("Return");
    ASSERT_TRUE(waitUntil([this] { return QFile::exists(path("table.txt")); }));
    waitForKeysIn(dialog, "behind the progress of an export");
    type("Escape");
    ASSERT_TRUE(waitUntil([dialog] { return !dialog->isVisible(); }));
    expectKeysWork("behind the export dialog");
}

TEST_F(KeyFocus, EscapeEndsARead)
{
    data.writeLongDays(300);
    window->show();
    openByKey();
    const auto isReadingInSight = [this] {
        const auto *dialog = window->findChild<ReadProgressDialog *>();
        return !window->isReading() || (dialog && dialog->isActiveWindow());
    };
    ASSERT_TRUE(waitUntil(isReadingInSight));
    ASSERT_TRUE(window->isReading()) << "or this test tells nothing";
    type("Escape");
    waitForRead();
    EXPECT_TRUE(window->windowTitle().endsWith("(incomplete)"));
    expectKeysWork("after a read that was cancelled");
}
