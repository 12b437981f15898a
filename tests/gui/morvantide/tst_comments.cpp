#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/commentview.h"
#include "gui/morvantide/dayfolder.h"
#include "gui/morvantide/windowtest.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>

namespace {

const QByteArray header = "#Record comments\n";

/// The beginning of the line of that record of DayFolder's day: a number from 0, and the day of 2019 from 1.
QByteArray key(int record, int day = 1)
{
    QByteArray key;
    for (int end : {0, 1}) {
        const QDateTime time = QDateTime(QDate(2019, 1, 1), QTime(0, 0)).addDays(day - 1).addSecs(600 * (record + end));
        key += time.toString("yyyy-MM-dd hh:mm:ss").toLatin1() + ".000000+02:00\t";
    }
    return key + (record % 2 ? "particles\t" : "ions\t");
}

class Comments : public WindowTest {
protected:
    Comments()
    {
        data.writeDay(1);
        data.writeDay(2);
    }
    void open(const QString &folder, const QVariantMap &choice = {})
    {
        startOpening(folder, choice);
        waitForRead();
        ASSERT_TRUE(window->datastore());
    }
    void open() { open(data.path()); }
    QLineEdit *line() const { return window->findChild<QLineEdit *>("commentEdit"); }
    void show(int record)
    {
        window->showRecord(window->datastore()->at(record));
        QTest::qWait(1);
    }
    /// A dialog that was shown before may have become active since.
    void enterLine()
    {
        QApplication::setActiveWindow(window.get());
        line()->setFocus();
        ASSERT_TRUE(line()->hasFocus());
    }
    void type(const QString &text)
    {
        line()->setFocus();
        QTest::keyClicks(line(), text);
    }
    QByteArray dayFile(const QString &day = "20190101") const
    {
        return ::contentOf(data.filePath(day + "-block.comments"));
    }

    DayFolder data;
};

} // namespace

TEST_F(Comments, AreReadWithTheDataAndThoseWithoutARecordAreLeftOut)
{
    data.write("20190101-block.comments", header + key(0) + "first\n" + key(7).replace("600", "601") + "sound\n" +
                                              key(3).replace("00.000000", "01.000000") + "of no record\n");
    data.write("20190102-block.comments", header + key(5, 2) + "of the second day\n");
    data.write("20190101-other.comments", header + key(1) + "of another variant\n");
    const QByteArray before = dayFile();
    window->show();
    open();
    const auto *list = window->findChild<CommentView *>();
    list->parentWidget()->show();
    qobject_cast<QDockWidget *>(list->parentWidget())->raise();
    QTest::qWait(20);
    const auto *model = list->list()->model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, 0).data().toString() + ' ' + model->index(row, 1).data().toString();
    EXPECT_EQ(rows, (QStringList{"2019-01-01 00:00:00 first", "2019-01-01 01:10:00 sound",
                                 "2019-01-02 00:50:00 of the second day"}));
    EXPECT_EQ(dayFile(), before);

    window->setFollowLast(true);
    for (const auto &[row, record] : {std::pair(2, 149), {1, 7}, {-1, 7}, {3, 7}}) {
        window->commentSelected(row);
        EXPECT_EQ(window->shownRecord(), window->datastore()->at(record)) << row;
        EXPECT_EQ(window->browser()->currentRecord(), window->shownRecord());
    }
    EXPECT_FALSE(window->isFollowingLast());
    QTest::qWait(1);
    EXPECT_EQ(line()->text(), "sound");
    auto *axis = window->browser()->timeView();
    axis->setTimeScale(TimeScale(window->datastore()->at(200)->beginTime, 60 * ticksPerSecond, 0));
    window->commentSelected(1);
    EXPECT_GE(axis->timeScale().positionOf(window->shownRecord()->beginTime), 0) << "scrolled to, though shown before";
    action("Previous comment")->trigger();
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(0));
}

TEST_F(Comments, WhatIsHalfTypedIsKeptWhereverTheDataGo)
{
    DayFolder other;
    other.writeDay(3);
    const struct {
        const char *name;
        std::function<void()> happens;
    } cases[] = {
        {"data are closed", [&] { window->closeData(); }},
        {"other data are opened", [&] { open(other.path()); }},
        {"the window is closed", [&] { window->close(); }},
        {"the window goes", [&] { window.reset(); }},
        {"the program is told to end",
         [&] {
             QTimer::singleShot(0, window.get(), &MorvantideMainWindow::terminateSignal);
             QApplication::exec();
         }},
    };
    for (const auto &c : cases) {
        makeWindow();
        window->show();
        ASSERT_NO_FATAL_FAILURE(open());
        show(4);
        line()->clear();
        type(c.name);
        c.happens();
        EXPECT_EQ(dayFile(), header + key(4) + c.name + '\n') << c.name;
        QFile::remove(data.filePath("20190101-block.comments"));
    }
}

TEST_F(Comments, WhatCouldNotBeWrittenOutlastsAnotherRead)
{
    ASSERT_NO_FATAL_FAILURE(open());
    show(4);
    const QString file = data.filePath("20190101-block.comments");
    ASSERT_TRUE(QDir().mkpath(file)); // in its place nothing can be written
    type("patience");
    QTest::keyClick(line(), Qt::Key_Return);
    window->readAgain();
    waitForRead();
    show(4);
    EXPECT_EQ(line()->text(), "patience");
    ASSERT_TRUE(QDir().rmdir(file));
    window->closeData();
    EXPECT_EQ(dayFile(), header + key(4) + "patience\n");
}

TEST_F(Comments, ReturnGivesTheKeysBackToThePlots)
{
    window->show();
    open();
    show(4);
    ASSERT_NO_FATAL_FAILURE(enterLine());
    type("typed");
    QTest::keyClick(line(), Qt::Key_Left);
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(4)) << "the cursor moves, not the record";
    QTest::keyClick(line(), Qt::Key_Return);
    auto *plot = qobject_cast<Tsb::Plot *>(window->focusWidget());
    ASSERT_TRUE(plot);
    QTest::keyClick(plot, Qt::Key_Right);
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(5));
    EXPECT_EQ(dayFile(), header + key(4) + "typed\n");

    // The strip marks the record, and the mark goes with the comment.
    auto *strip = window->findChild<Tsb::OpmodePlot *>();
    const int x = int(strip->timeScale().positionOf(window->datastore()->at(4)->beginTime));
    const auto foot = [&] {
        strip->grab();
        return strip->image().pixelColor(x + 1, strip->image().height() - 1).name();
    };
    EXPECT_EQ(foot(), "#2e3436");
    show(4);
    line()->selectAll();
    QTest::keyClick(line(), Qt::Key_Delete);
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_NE(foot(), "#2e3436");
    EXPECT_EQ(dayFile(), header);
}

TEST_F(Comments, ReturnLeavesAFormThatFloats)
{
    window->show();
    open();
    show(4);
    auto *dock = window->findChild<QDockWidget *>("currentrecordform");
    dock->setFloating(true);
    QApplication::setActiveWindow(dock);
    type("typed");
    ASSERT_EQ(QApplication::focusWidget(), line());
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([] { return qobject_cast<Tsb::Plot *>(QApplication::focusWidget()); }));
}

TEST_F(Comments, ARecordThatEndsBeforeItsBeginHidesNone)
{
    const QByteArray wrong = "2001-01-01 00:00:00.000000+02:00\t";
    QByteArray flags = ::contentOf(data.filePath("20190102-block.flags"));
    flags.replace(flags.lastIndexOf("2019"), wrong.size(), wrong);
    data.write("20190102-block.flags", flags);
    data.write("20190102-block.comments",
               header + key(5, 2) + "sound\n" + key(143, 2).left(wrong.size()) + wrong + "particles\twrong\n");
    open();
    show(149);
    EXPECT_EQ(line()->text(), "sound");
    show(287);
    EXPECT_EQ(line()->text(), "wrong");
}

TEST_F(Comments, LettersRightBehindAStepBelongToTheRecordThatItLeadsTo)
{
    data.write("20190101-block.comments", header + key(4) + "stands\n");
    window->show();
    open();
    show(3);
    ASSERT_NO_FATAL_FAILURE(enterLine());
    action("Next comment")->trigger(); // and no pass of the event loop
    QTest::keyClicks(line(), "x");
    QTest::keyClick(line(), Qt::Key_Return);
    EXPECT_EQ(dayFile(), header + key(4) + "standsx\n");
}

TEST_F(Comments, DataWithoutAVariantHaveNone)
{
    withDialog<QFileDialog>([this](QFileDialog &dialog) {
        dialog.setDirectory(data.path());
        dialog.findChild<QLineEdit *>("fileNameEdit")->setText("\"20190101-block.flags\"");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    window->showDataFileChoice();
    waitForRead();
    show(0);
    EXPECT_EQ(line()->text(), "n/a");
    EXPECT_FALSE(line()->isEnabled());
    EXPECT_FALSE(action("Next comment")->isEnabled());
}

TEST_F(Comments, OldStyleDataHaveThoseOfTheirOwnVariant)
{
    DayFolder old;
    old.write("2010-05-14.sig", ::contentOf(FUZZ_CORPUS "/dayfile/old-plain.sig"));
    ASSERT_NO_FATAL_FAILURE(open(old.path(), {{"legacyFiles", true}, {"variant", "whatever stood there"}}));
    show(0);
    type("old");
    QTest::keyClick(line(), Qt::Key_Return);
    const QStringList files = filesIn(old.path());
    EXPECT_EQ(files.filter(".comments").size(), 1);
    EXPECT_EQ(files.filter("-legacy.comments").size(), 1) << files.join(' ').toStdString();
}
