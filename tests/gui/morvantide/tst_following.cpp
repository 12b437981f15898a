#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/frame/followcommand.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/dayfolder.h"
#include "gui/morvantide/windowtest.h"
#include "support/livewriting.h"
#include "support/readcomparison.h"

#include <QLineEdit>
#include <QSignalSpy>

namespace {

class FollowingWindow : public WindowTest {
protected:
    int recordCount() const { return window->datastore() ? window->datastore()->size() : -1; }
    void open(const QString &folder)
    {
        startOpening(folder);
        waitForRead();
        ASSERT_TRUE(window->datastore());
    }
    void follow() { action("Follow folder")->trigger(); }
    bool comesTo(int count)
    {
        return QTest::qWaitFor([&] { return !window->isReading() && recordCount() == count; }, 20000);
    }
    static QByteArray row(int second)
    {
        const auto text = [](int s) {
            return timeToString(recordTimeFromTicks((1546300800 + qint64(s)) * ticksPerSecond)).toUtf8();
        };
        return text(second) + '\t' + text(second + 1) + "\tions\t\n";
    }
    void append(const QString &name, const QByteArray &bytes) const
    {
        QFile file(data.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::Append) && file.write(bytes) == bytes.size());
    }

    const QByteArray header = "# Quilvane flags\n# \nbegin_time\tend_time\topmode\tflags\n";
    const QString day = "20190101-block.flags";
    DayFolder data;
};

// ---- what the user sees

TEST_F(FollowingWindow, TakesInRowsAndNewDays)
{
    data.write(day, header + row(0));
    window->show();
    EXPECT_FALSE(action("Follow folder")->isEnabled());
    open(data.path());
    const QString title = window->windowTitle();
    follow();
    EXPECT_EQ(window->windowTitle(), title + " (following)");
    window->setFollowLast(true);
    append(day, row(1) + row(2).left(30));
    ASSERT_TRUE(comesTo(2));
    QTest::qWait(1000); // no look is due
    QElapsedTimer clock;
    clock.start();
    append(day, row(2).mid(30));
    ASSERT_TRUE(comesTo(3));
    EXPECT_LT(clock.elapsed(), 2500) << "the system hasn't told of it";
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(2));
    data.write("20190102-block.flags", header + row(86400));
    ASSERT_TRUE(comesTo(4));
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(3));

    follow();
    EXPECT_EQ(window->windowTitle(), title);
    append(day, row(3));
    QTest::qWait(300);
    EXPECT_EQ(recordCount(), 4);
    follow();
    EXPECT_TRUE(comesTo(5));
    window->closeData();
    EXPECT_FALSE(action("Follow folder")->isChecked());
    EXPECT_EQ(window->windowTitle(), "Morvantide");
}

TEST_F(FollowingWindow, ReadsAgainWhereAFileWasReplaced)
{
    data.write(day, header + row(0) + row(1));
    open(data.path());
    follow();
    const auto store = window->datastore();
    append(day, row(2));
    ASSERT_TRUE(comesTo(3));
    EXPECT_EQ(window->datastore(), store);
    window->show();
    window->activateWindow();
    window->showRecord(store->at(0));
    QTest::qWait(50);
    auto *const line = window->findChild<QLineEdit *>("commentEdit");
    line->setFocus();
    ASSERT_TRUE(line->hasFocus());
    QTest::keyClicks(line, "wind");
    data.write(day, header + row(0));
    QTimer keys; // somebody goes on typing
    QObject::connect(&keys, &QTimer::timeout, [] {
        if (QWidget *const dialog = QApplication::activeModalWidget())
            QTest::keyClicks(dialog->focusWidget() ? dialog->focusWidget() : dialog, " \r ");
    });
    keys.start(1);
    ASSERT_TRUE(comesTo(1));
    keys.stop();
    QTest::qWait(50);
    EXPECT_EQ(window->focusWidget(), line);
    QTest::keyClicks(line, "y");
    EXPECT_EQ(line->text(), "windy");
    EXPECT_TRUE(window->windowTitle().endsWith("(following)"));
    append(day, row(8));
    EXPECT_TRUE(comesTo(2)) << "it goes on";
}

TEST_F(FollowingWindow, TellsALossOnce)
{
    data.write(day, header + row(0));
    open(data.path());
    follow();
    const QString away = data.path() + "-away";
    ASSERT_TRUE(QDir().rename(data.path(), away));
    EXPECT_TRUE(QTest::qWaitFor([this] { return log().contains("can't be read"); }, 10000));
    QTest::qWait(6000); // another look
    ASSERT_TRUE(QDir().rename(away, data.path()));
    append(day, row(1));
    EXPECT_TRUE(comesTo(2));
    EXPECT_EQ(log().count("can't be read"), 1);
    EXPECT_EQ(log().count("is back"), 1);
}

TEST_F(FollowingWindow, SpectraComeOnceAndNotWhereTheyWereRemoved)
{
    const QString spectra = "20190101-block-ions.spectra";
    const auto spectrum = [](int second) { return row(second).replace("\t\n", "\t1\t2\t1\t2\n"); };
    data.write(spectra, "# Quilvane spectra\n# spectra:\n# - {name: ions, xpoints: [1, 2], xunit: nm, yunit: 1/cm^3, "
                        "scale: radius, hash: h}\nbegin_time\tend_time\topmode\n" +
                            spectrum(0));
    open(data.path());
    follow();
    append(spectra, spectrum(1));
    ASSERT_TRUE(comesTo(2));
    follow();
    append(spectra, spectrum(2));
    follow();
    ASSERT_TRUE(comesTo(3));
    QTest::qWait(200);
    for (const auto &record : window->datastore()->records())
        EXPECT_EQ(record->spectra.size(), 1u);

    window->removeSpectrum(window->uiInfo()->spectrumInfos().first().get());
    append(spectra, spectrum(3));
    ASSERT_TRUE(comesTo(4));
    QTest::qWait(200);
    EXPECT_TRUE(window->datastore()->at(3)->spectra.empty()) << "it was removed";
    EXPECT_TRUE(window->datastore()->spectrumSeries().isEmpty());
}

TEST_F(FollowingWindow, RowsWaitForTheEndOfASave)
{
    data.write(day, header + row(0));
    open(data.path());
    follow();
    withDialog<DataSaverDialog>([this](DataSaverDialog &dialog) {
        append(day, row(1));
        QTest::qWait(400);
        EXPECT_EQ(recordCount(), 1);
        dialog.reject();
    });
    window->saveData();
    EXPECT_TRUE(comesTo(2));
}

TEST_F(FollowingWindow, MayBeClosedAndOpenedAtAnyMoment)
{
    QByteArray text = header;
    for (int i = 0; i < 20000; ++i)
        text += row(i);
    data.write(day, text);
    for (int i = 0; i < 10; ++i) {
        open(data.path());
        follow();
        append(day, row(20000 + 2 * i) + row(20001 + 2 * i));
        data.write(QString("2019010%1-block.flags").arg(2 + i % 7), header + row(86400 * (1 + i % 7)));
        QTest::qWait(i * 20);
        if (i % 2)
            window->closeData();
    }
    open(data.path());
    EXPECT_EQ(recordCount(), 20027);
    follow();
    window.reset();
}

TEST(FollowCommandTest, ReadsThatTakeLongAreFarApart)
{
    FollowCommand command(nullptr, 10);
    QSignalSpy wanted(&command, &FollowCommand::readAgainWanted);
    command.action()->setChecked(true);
    Q_EMIT command.following().contradicted();
    ASSERT_TRUE(wanted.wait(1000));
    QTest::qWait(100); // the read
    command.readFailed(false);
    EXPECT_FALSE(wanted.wait(500));
    EXPECT_TRUE(wanted.wait(2000));
}

// ---- an instrument that writes all the time

class LiveWindow : public WindowTest {
protected:
    void follow(int seconds)
    {
        GrowingFolder folder;
        folder.write(10000);
        folder.flush(true);
        window->resize(1400, 900);
        window->show();
        startOpening(folder.path());
        waitForRead();
        ASSERT_TRUE(window->datastore());
        action("Follow folder")->trigger();
        window->setFollowLast(true);
        const auto store = window->datastore();
        QTest::qWait(500);

        const LoopTurns turns = turnWhileWriting(folder, seconds);
        EXPECT_TRUE(QTest::qWaitFor([&] { return window->datastore()->size() == folder.count(); }, 20000));
        QTest::qWait(300); // spectra of the last record
        EXPECT_EQ(window->datastore(), store) << "it was read again";
        std::printf("%d records; %zu turns of the event loop with work: longest %.1f ms, %.1f ms of work, 99.9 %% "
                    "below %.1f ms\n",
                    folder.count(), turns.count, turns.longest, turns.longestWork, turns.percentile999);
        EXPECT_EQ(window->datastore()->size(), folder.count());
        EXPECT_EQ(differenceToARead(*window->datastore(), folder.path()), QString());
    }
};

TEST_F(LiveWindow, MissesAndDoublesNoRow)
{
    follow(3);
}

/// Run once, apart from the others.
TEST_F(LiveWindow, DISABLED_MissesAndDoublesNoRowInAMinute)
{
    follow(60);
}

} // namespace
