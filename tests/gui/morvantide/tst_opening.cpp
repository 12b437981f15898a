#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/droppeddata.h"
#include "gui/morvantide/readprogressdialog.h"
#include "gui/morvantide/recentfolders.h"
#include "gui/morvantide/reviewwindow.h"
#include "support/gestures.h"

#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QSet>
#include <QSettings>

namespace {

class OpeningTest : public ReviewWindow {
protected:
    OpeningTest()
    {
        window->resize(1100, 800);
        window->show();
        window->activateWindow();
        settle();
    }
    /// What the data dialog offers, once the action has brought it up.
    QVariantMap offeredBy(const std::function<void()> &act)
    {
        QVariantMap offered;
        bool came = false;
        withDialog<DataChooserDialog>([&](DataChooserDialog &dialog) {
            offered = dialog.choice();
            came = true;
            dialog.reject();
        });
        act();
        EXPECT_TRUE(QTest::qWaitFor([&came] { return came; }));
        return offered;
    }
    QListWidget *recent() const { return window->findChild<QListWidget *>("recentFolders"); }
    QWidget *emptyWindow() const { return window->findChild<QWidget *>("emptyWindow"); }
    Tsb::TimeNavigator *axis() const { return window->browser()->timeView()->navigator(); }
};

} // namespace

TEST_F(OpeningTest, EveryMenuEntryHasALetterAndEveryIconTellsItsKey)
{
    open();
    for (QMenu *menu : window->findChildren<QMenu *>()) {
        menu->popup(QPoint());
        QSet<QChar> letters;
        for (const QAction *entry : menu->actions()) {
            if (entry->isSeparator() || !entry->isVisible())
                continue;
            QString text = entry->text();
            const int place = text.remove("&&").indexOf('&');
            EXPECT_GE(place, 0) << entry->text().toStdString() << " in " << menu->title().toStdString();
            EXPECT_FALSE(letters.contains(text[place + 1].toUpper())) << entry->text().toStdString();
            letters.insert(text[place + 1].toUpper());
        }
        menu->close();
    }
    for (const QAction *one : window->findChildren<QAction *>())
        EXPECT_TRUE(one->icon().isNull() || one->text().isEmpty() || // of a line's own button

                    (one->toolTip().contains(one->shortcut().toString()) && !one->toolTip().isEmpty()))
            << one->text().toStdString() << " \"" << one->toolTip().toStdString();
    const struct {
        const char *command;
        const char *key;
    } table[] = {{"Open data folder...", "Ctrl+O"},
                 {"Manually select data files...", "Ctrl+Shift+O"},
                 {"Save data...", "Ctrl+S"},
                 {"Export data...", "Ctrl+E"},
                 {"Quit", "Ctrl+Q"},
                 {"Read again", "F5"},
                 {"Fit timescale", "Ctrl+0"},
                 {"Full screen", "F11"}};
    for (const auto &row : table)
        EXPECT_EQ(action(row.command)->shortcut().toString(), row.key) << row.command;
}

TEST_F(OpeningTest, TheEmptyWindowOffersWhatWasOpenLast)
{
    EXPECT_TRUE(emptyWindow()->isVisible());
    EXPECT_EQ(emptyWindow()->geometry(), window->browser()->geometry());
    const auto isSeen = [this] {
        const QWidget *top = window->childAt(window->browser()->geometry().center());
        return top && (top == emptyWindow() || emptyWindow()->isAncestorOf(top));
    };
    EXPECT_TRUE(isSeen());
    EXPECT_FALSE(recent()->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), emptyWindow()->findChild<QPushButton *>());
    const QDateTime day(QDate(2019, 9, 12), {});
    open();
    EXPECT_FALSE(emptyWindow()->isVisible());
    ASSERT_EQ(offeredBy([this] { window->showDataDirChoice(); })["limitBegin"], false);
    QDir().mkpath(path("elsewhere"));
    startOpening(path("elsewhere"), {{"variant", "10s"}, {"limitBegin", true}, {"beginTime", day}});
    waitForRead();
    QDir().rmdir(path("elsewhere"));
    EXPECT_TRUE(emptyWindow()->isVisible()) << "nothing was there";
    EXPECT_EQ(recent()->item(0)->text(), path("elsewhere") + " (10s, from 2019-09-12)");
    EXPECT_EQ(recent()->item(1)->text(), path("demo") + " (block)");

    window->activateWindow();
    settle();
    EXPECT_EQ(QApplication::focusWidget(), recent());
    const auto press = [this](Qt::Key key) { QTest::keyClick(window->windowHandle(), key); };
    const QVariantMap newest = offeredBy([&] { press(Qt::Key_Return); });
    EXPECT_EQ(newest["folderName"], path("elsewhere"));
    EXPECT_EQ(newest["variant"], "10s");
    EXPECT_EQ(newest["beginTime"].toDateTime().date(), day.date());
    EXPECT_EQ(newest["limitBegin"], true);
    press(Qt::Key_Down);
    EXPECT_EQ(offeredBy([&] { press(Qt::Key_Enter); })["folderName"], path("demo"));
    EXPECT_EQ(offeredBy([this] { Q_EMIT recent()->itemClicked(recent()->item(0)); })["folderName"], path("elsewhere"))
        << "a folder that isn't there is asked about";
    window->findChild<QDockWidget *>("logDock")->findChild<QPlainTextEdit *>()->setFocus();
    press(Qt::Key_Return);
    settle();
    EXPECT_FALSE(QApplication::activeModalWidget()) << "Return of a dock offers nothing";

    auto *const menu = action("Recent folders")->menu();
    menu->popup(QPoint());
    ASSERT_EQ(menu->actions().size(), 4);
    menu->actions()[1]->trigger();
    waitForRead();
    ASSERT_TRUE(window->datastore());
    EXPECT_EQ(RecentFolders(*std::make_unique<QSettings>(settingsFile(), QSettings::IniFormat)).folders().first(),
              path("demo"));
}

TEST_F(OpeningTest, WhatIsDroppedIsOfferedWithItsVariantAndSpan)
{
    for (const char *name :
         {"data/20190912-block.records", "data/20190912-1s.records", "data/2019-09-14-1s-ions.spectra",
          "data/20190915-1s.flags", "old/2019-09-12.log", "data/notes.txt"})
        write(name, "");
    const auto offered = [this](const QStringList &names) {
        QMimeData dropped;
        QList<QUrl> urls;
        for (const QString &name : names)
            urls << QUrl::fromLocalFile(path(name));
        dropped.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &dropped, Qt::LeftButton, {});
        QApplication::sendEvent(window.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QVariantMap choice = offeredBy([&] {
            QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &dropped, Qt::LeftButton, {});
            QApplication::sendEvent(window.get(), &drop);
        });
        EXPECT_EQ(choice["limitBegin"], choice["limitEnd"]);
        const auto day = [&choice](const char *key) { return choice[key].toDateTime().toString("yyyyMMdd"); };
        return QStringList{QDir(path("")).relativeFilePath(choice["folderName"].toString()),
                           choice["legacyFiles"].toBool() ? "legacy" : choice["variant"].toString(),
                           choice["limitBegin"].toBool() ? day("beginTime") + '-' + day("endTime") : QString()};
    };
    EXPECT_EQ(offered({"data"}), (QStringList{"data", "block", ""}));
    EXPECT_EQ(offered({"old"}), (QStringList{"old", "legacy", ""}));
    EXPECT_EQ(offered({"data/20190915-1s.flags", "data/2019-09-14-1s-ions.spectra"}),
              (QStringList{"data", "1s", "20190914-20190915"}));
    EXPECT_EQ(offered({"data/20190912-block.records"}), (QStringList{"data", "block", "20190912-20190912"}));
    EXPECT_EQ(offered({"old/2019-09-12.log"}), (QStringList{"old", "legacy", "20190912-20190912"}));
    EXPECT_EQ(offered({"data/notes.txt"}), (QStringList{"data", "block", ""}));

    QMimeData text;
    text.setText("/tmp");
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

// ---- reading again

TEST_F(OpeningTest, ReadingAgainKeepsViewSelectionAndLayout)
{
    open();
    const int count = window->datastore()->size();
    window->browser()->closeAllViews();
    settle();
    window->browser()->addElectrometerPlot(2);
    window->browser()->addOpmodePlot();
    window->showRecord(window->datastore()->at(count / 2));
    const RecordTime selected = window->shownRecord()->beginTime;
    axis()->changeZoom(0.3, 200);
    const TimeScale scale = axis()->timeScale();
    const QVariant views = window->browser()->setup();
    Tsb::MeasuringCursors &cursors = *window->browser()->measuringCursors();
    cursors.set(0, selected);
    cursors.set(1, window->shownRecord()->endTime);
    const Tsb::MeasuringCursors::Times measured = cursors.times();
    auto *const front = window->findChild<QDockWidget *>("logDock");
    front->raise(); // the first cursor has brought another dock before it
    action("Autosave layout")->setChecked(true);
    settle();

    const QStringList former = QDir(path("demo")).entryList(QDir::Files);
    for (const QString &file : former) {
        QByteArray text = contentOf("demo/" + file);
        const QString day = file.left(8), next = "20991231";
        const auto iso = [](const QString &d) { return (d.left(4) + '-' + d.mid(4, 2) + '-' + d.mid(6)).toLatin1(); };
        text.replace(iso(day), iso(next));
        if (day == former.first().left(8))
            write("demo/" + next + file.mid(8), text);
    }
    QTest::keyClick(window->windowHandle(), Qt::Key_F5);
    ASSERT_TRUE(window->isReading());
    EXPECT_TRUE(window->datastore()) << "the window stays as it is meanwhile";
    waitForRead();
    settle();
    EXPECT_GT(window->datastore()->size(), count) << "a day has come";
    EXPECT_EQ(window->browser()->timeScale(), scale);
    EXPECT_EQ(window->browser()->setup(), views);
    EXPECT_TRUE(cursors.times() == measured);
    EXPECT_FALSE(front->visibleRegion().isEmpty()) << "no other dock has come before it";
    ASSERT_TRUE(window->shownRecord());
    EXPECT_EQ(window->shownRecord()->beginTime, selected);
    EXPECT_GE(window->datastore()->indexOf(selected, window->shownRecord()->endTime), 0) << "of the new data";
    EXPECT_FALSE(QFile::exists(path("demo/default.windowsetup"))) << "nothing is closed, so nothing is saved";

    window->fitTimescale();
    const TimeScale whole = axis()->timeScale();
    for (const QString &file : QDir(path("demo")).entryList({"20991231*"}))
        QFile::remove(path("demo/" + file));
    window->readAgain();
    waitForRead();
    EXPECT_EQ(window->datastore()->size(), count);
    EXPECT_TRUE(axis()->isWhole()) << "who sees the whole goes on to see it";
    EXPECT_NE(axis()->timeScale(), whole);

    for (const QString &file : former)
        QFile::remove(path("demo/" + file));
    window->readAgain();
    waitForRead();
    ASSERT_TRUE(window->datastore());
    EXPECT_EQ(window->datastore()->size(), count) << "nothing was read";
    EXPECT_TRUE(log().contains("The data stay as they were read before"));
    EXPECT_TRUE(cursors.times() == measured);
    window->closeData();
    EXPECT_FALSE(cursors.areAny()) << "other data";
}

TEST_F(OpeningTest, ReadingAgainGoesOnFollowingThePresentAndWithTheNameForSaving)
{
    open();
    window->showRecord(window->datastore()->records().back());
    action("Follow current moment")->setChecked(true);
    const auto nameAfter = [this](const std::function<void(DataSaverDialog &)> &act) {
        QString name;
        withDialog<DataSaverDialog>([&](DataSaverDialog &dialog) {
            act(dialog);
            name = dialog.variant();
            dialog.reject();
        });
        window->saveData();
        return name;
    };
    EXPECT_EQ(nameAfter([](DataSaverDialog &dialog) { dialog.setVariant("mine"); }), "mine");
    window->readAgain();
    waitForRead();
    EXPECT_TRUE(axis()->isFollowingNow());
    EXPECT_TRUE(action("Follow current moment")->isChecked());
    EXPECT_EQ(nameAfter([](DataSaverDialog &) {}), "mine");
    window->closeData();
    open();
    EXPECT_EQ(nameAfter([](DataSaverDialog &) {}), "block-reinv");
}

TEST_F(OpeningTest, ReadingAgainInvertsAgainAndKeepsWhatTheUserWrote)
{
    open();
    reinvert(writeVariants(1));
    const auto info = [this] { return window->uiInfo()->spectrumInfos().last(); };
    const QString hash = info()->hash;
    const int count = window->datastore()->series(info().get())->size();
    window->uiInfo()->setSpectrumComment(info().get(), "mine");
    window->readAgain();
    waitForRead();
    waitForReinversion();
    const auto again = window->uiInfo()->spectrumById(hash);
    ASSERT_TRUE(again);
    EXPECT_EQ(window->uiInfo()->spectrumComment(again.get()), "mine");
    ASSERT_TRUE(window->datastore()->series(again.get()));
    EXPECT_EQ(window->datastore()->series(again.get())->size(), count);
}

TEST_F(OpeningTest, ACancelledSecondReadLeavesTheData)
{
    open();
    const auto store = window->datastore();
    window->readAgain();
    window->cancelFileReader();
    waitForRead();
    EXPECT_TRUE(window->datastore() == store || !log().contains("The data stay")) << "unless it was done before";
}
