#include "gui/browser/controls/gototimedialog.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/logdock.h"
#include "gui/common/recordform.h"
#include "gui/common/recordviews/recordview.h"
#include "gui/frame/abouttext.h"
#include "gui/frame/framedocks.h"
#include "gui/frame/mainwindowbase.h"
#include "gui/frame/measuringdock.h"
#include "gui/frame/measuringmodel.h"
#include "support/instrument.h"
#include "util/buildinfo.h"
#include "util/timeformat.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using RecordPointer = std::shared_ptr<Record>;

struct SpyView : RecordViews::RecordView {
    QList<RecordPointer> shown;

    using RecordView::RecordView;
    void showRecord(RecordPointer record) override { shown.append(record); }
    QString viewName() const override { return "spy"; }
    void refreshRecord() override {}
};

struct Window : MainWindowBase {
    SpyView *view = new SpyView(uiInfo(), this);

    Window()
    {
        setupActions();
        setupContextActions();
        docks()->addRecordView(view, "diagnostics");
        setupDocks();
        setupToolbar();
        setupMenus();
    }
    using MainWindowBase::actions;
    using MainWindowBase::docks;
    using MainWindowBase::setDatastore;
    using MainWindowBase::showHeldBackRecord;
};

constexpr std::int64_t firstTick = 1'500'000'000 * ticksPerSecond;

RecordPointer record(int second, int opmode)
{
    auto made = std::make_shared<Record>();
    made->beginTime = recordTimeFromTicks(firstTick + second * ticksPerSecond);
    made->endTime = recordTimeFromTicks(firstTick + (second + 10) * ticksPerSecond);
    made->midTime = Spectrometer::middleOf(made->beginTime, made->endTime);
    made->opmode = opmode;
    made->dpVariantId = 0;
    return made;
}

/// A window over eight records of the modes 0 1 0 1 0 1 0 2.
class MainWindowBaseTest : public testing::Test {
protected:
    MainWindowBaseTest()
    {
        metadata->dpVariants.append(DpVariant());
        window.uiInfo()->setData(metadata, {});
        window.uiInfo()->publish();
        for (int i = 0; i < 8; ++i)
            insert(i == 7 ? record(70, 2) : record(10 * i, i % 2));
        window.setDatastore(store);
        settle();
    }
    void insert(const RecordPointer &one) { store->insertRecord(store->lowerBound(one->beginTime), one); }
    /// What the store does when a record comes in.
    RecordPointer comesIn(int second, int opmode)
    {
        const RecordPointer one = record(second, opmode);
        insert(one);
        Q_EMIT store->updated(store->size() - 1, one, RecordCameIn);
        return one;
    }
    void changes(const RecordPointer &one, int flags) { Q_EMIT store->updated(0, one, flags); }
    void settle()
    {
        QTest::qWait(1);
        window.view->shown.clear();
    }
    QList<RecordPointer> shownAfter()
    {
        QTest::qWait(1);
        const auto shown = window.view->shown;
        window.view->shown.clear();
        return shown;
    }
    QString shownBegin() { return window.findChild<QLabel *>("beginTimeLabel")->text(); }
    void follow() { window.actions().followLast->setChecked(true); }

    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "particles", "offset"});
    std::shared_ptr<Datastore> store = std::make_shared<Datastore>();
    Window window;
};

} // namespace

TEST_F(MainWindowBaseTest, AnyNumberOfMovesCostsTheViewsOneUpdate)
{
    for (int i = 0; i < 8; ++i)
        window.showRecordDelayed(store->at(i));
    EXPECT_EQ(window.shownRecord(), nullptr);
    EXPECT_EQ(shownAfter(), QList<RecordPointer>{store->at(7)}) << "delayed";
    for (int i = 0; i < 7; ++i)
        window.showRecord(store->at(i));
    EXPECT_EQ(shownAfter(), QList<RecordPointer>{store->at(6)});
    EXPECT_EQ(window.browser()->currentRecord(), store->at(6));
    window.showRecord(store->at(6));
    EXPECT_TRUE(shownAfter().isEmpty());
    window.showRecord(nullptr);
    EXPECT_TRUE(shownAfter().isEmpty()) << "views keep the last record";
    EXPECT_EQ(shownBegin(), "-");
    store->at(1)->interim = true;
    window.showRecord(store->at(1));
    EXPECT_TRUE(shownAfter().isEmpty()) << "an interim record reaches the form only";
    EXPECT_NE(shownBegin(), "-");
}

TEST_F(MainWindowBaseTest, AMoveOfTheUserEndsFollowing)
{
    follow();
    EXPECT_EQ(window.shownRecord(), store->at(7)) << "nothing came in: the store's last";
    EXPECT_TRUE(window.isFollowingLast());
    window.jumpRecord(NextRecord);
    window.jumpRecord(NextRecordOfMode);
    EXPECT_TRUE(window.isFollowingLast()) << "no move, no end";
    window.showRecord(store->at(7));
    EXPECT_FALSE(window.isFollowingLast()) << "asking for the shown record is a wish too";
    follow();
    Q_EMIT window.browser()->recordChosen(store->at(2));
    EXPECT_FALSE(window.isFollowingLast());
    EXPECT_EQ(window.shownRecord(), store->at(2));
}

TEST_F(MainWindowBaseTest, JumpsByCommandAndKey)
{
    const struct {
        int from;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int to;
    } table[] = {{2, Qt::Key_Right, {}, 3},
                 {2, Qt::Key_Left, {}, 1},
                 {2, Qt::Key_Right, Qt::ControlModifier, 4},
                 {2, Qt::Key_Left, Qt::ControlModifier, 0},
                 {0, Qt::Key_Left, {}, 0},
                 {0, Qt::Key_Left, Qt::ControlModifier, 0},
                 {7, Qt::Key_Right, {}, 7},
                 {7, Qt::Key_Left, Qt::ControlModifier, 7},
                 {2, Qt::Key_End, {}, 7}};
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const auto &row : table) {
        window.showRecord(store->at(row.from));
        QTest::keyClick(&window, row.key, row.modifiers);
        EXPECT_EQ(store->indexOfHead(*window.shownRecord()), row.to) << row.from << " key " << row.key;
    }
    window.jumpRecord(JumpCmd(9));
    EXPECT_EQ(window.shownRecord(), store->at(7));
    store->setMaxRecords(1);
    window.setDatastore(nullptr);
    window.jumpRecord(PreviousRecord);
    EXPECT_EQ(window.shownRecord(), nullptr);
}

TEST_F(MainWindowBaseTest, FollowsWhatComesIn)
{
    window.showRecord(store->at(0));
    comesIn(100, 0);
    EXPECT_EQ(window.shownRecord(), store->at(0));
    follow();
    EXPECT_EQ(window.shownRecord(), store->at(8)) << "the latest that came in";
    const RecordPointer next = comesIn(110, 0);
    EXPECT_EQ(window.shownRecord(), next);
    EXPECT_TRUE(window.isFollowingLast());

    window.browser()->timeView()->navigator()->forgetViews();
    const TimeScale followed = window.browser()->timeScale();
    EXPECT_EQ(window.shownRecord(), comesIn(500'000, 0));
    EXPECT_NE(window.browser()->timeScale(), followed);
    EXPECT_FALSE(window.browser()->timeView()->navigator()->hasPreviousView()) << "nobody went there";
    window.showRecord(next);
    EXPECT_TRUE(window.browser()->timeView()->navigator()->hasPreviousView());
    follow();

    metadata->dpVariants[0].skipOffsets = true;
    const RecordPointer last = window.shownRecord();
    comesIn(500'020, 2);
    EXPECT_EQ(window.shownRecord(), last);
    EXPECT_EQ(window.shownRecord(), comesIn(500'030, 1));
}

TEST_F(MainWindowBaseTest, HoldsTheNextRecordBackWhileSpectraChange)
{
    follow();
    const RecordPointer first = comesIn(100, 0);
    changes(first, SpectraChanged);
    const RecordPointer second = comesIn(110, 0);
    EXPECT_EQ(window.shownRecord(), first) << "held back";
    changes(first, SpectraChanged);
    EXPECT_EQ(window.shownRecord(), first);
    changes(second, SpectraChanged);
    EXPECT_EQ(window.shownRecord(), second) << "its own spectra are here";
    settle();
    changes(second, SpectraChanged);
    EXPECT_EQ(shownAfter(), QList<RecordPointer>{second}) << "more of them";
    const RecordPointer without = comesIn(112, 2);
    EXPECT_EQ(window.shownRecord(), second);
    window.showHeldBackRecord();
    EXPECT_EQ(window.shownRecord(), without) << "nothing more comes";
    EXPECT_TRUE(window.isFollowingLast());

    const RecordPointer third = comesIn(120, 0), fourth = comesIn(130, 0);
    EXPECT_EQ(window.shownRecord(), fourth) << "one record is held back, not two";
    changes(fourth, SpectraChanged);
    metadata->dpVariants[0].followAtOnce = true;
    const RecordPointer fifth = comesIn(140, 0);
    EXPECT_EQ(window.shownRecord(), fifth);
}

TEST_F(MainWindowBaseTest, ALetterOfACommentEndsFollowing)
{
    follow();
    auto *const line = window.findChild<QLineEdit *>("commentEdit");
    line->setEnabled(true); // there are no comments
    QTest::keyClick(line, Qt::Key_A);
    EXPECT_FALSE(window.isFollowingLast());
}

TEST_F(MainWindowBaseTest, ChangesOfTheShownRecordAlone)
{
    window.showRecord(store->at(3));
    settle();
    changes(store->at(2), DataReplaced);
    changes(store->at(2), SpectraChanged);
    EXPECT_TRUE(shownAfter().isEmpty());
    for (int flags : {DataReplaced, SpectraChanged}) {
        changes(store->at(3), flags);
        changes(store->at(3), flags);
        EXPECT_EQ(shownAfter(), QList<RecordPointer>{store->at(3)}) << flags;
    }
    comesIn(100, 0)->dpVariantId = 77; // outside of the list of variants
    EXPECT_TRUE(shownAfter().isEmpty());
}

TEST_F(MainWindowBaseTest, AnotherStoreTakesTheRecordsAway)
{
    follow();
    window.showRecordDelayed(store->at(2));
    settle();
    follow();
    window.setDatastore(nullptr);
    EXPECT_EQ(window.view->shown, QList<RecordPointer>{nullptr}) << "at once";
    EXPECT_EQ(window.shownRecord(), nullptr);
    EXPECT_EQ(shownBegin(), "-");
    EXPECT_TRUE(window.isFollowingLast()) << "only a move of the user ends that";
    settle();
    comesIn(200, 0);
    EXPECT_EQ(window.shownRecord(), nullptr) << "the old store isn't listened to";
    window.updateShownRecord();
    EXPECT_EQ(window.shownRecord(), nullptr);

    follow();
    auto other = std::make_shared<Datastore>();
    const RecordPointer one = record(0, 0);
    one->beginUtcOffset = 7200;
    other->insertRecord(other->lowerBound(one->beginTime), one);
    window.setDatastore(other);
    EXPECT_EQ(window.browser()->timeScale(), TimeScale(one->beginTime, 100'000'000, 10));
    EXPECT_EQ(window.browser()->timeView()->timeOffset(), 7200);
    EXPECT_EQ(window.shownRecord(), one) << "the latest is followed on";
}

TEST_F(MainWindowBaseTest, ShowsTheSpanOfAllRecords)
{
    window.resize(1000, 600);
    window.show();
    for (bool ended : {true, false}) {
        if (!ended)
            store->at(7)->endTime = {};
        window.fitTimescale();
        const TimeScale scale = window.browser()->timeScale();
        EXPECT_LT(std::abs(scale.positionOf(store->at(0)->beginTime)), 60) << ended;
        const RecordTime end = ended ? store->at(7)->endTime : store->at(7)->beginTime;
        const int width = window.browser()->timeView()->contentsRect().width();
        EXPECT_LT(std::abs(scale.positionOf(end) - width), 60) << ended;
    }
    const TimeScale before = window.browser()->timeScale();
    window.setDatastore(std::make_shared<Datastore>());
    window.fitTimescale();
    EXPECT_EQ(window.browser()->timeScale(), before);
}

TEST_F(MainWindowBaseTest, FindsTheWayToAMomentAndBack)
{
    window.resize(1000, 600);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.showRecord(store->at(3));
    Tsb::TimeNavigator *const axis = window.browser()->timeView()->navigator();
    axis->forgetViews();
    const TimeScale home = window.browser()->timeScale();
    EXPECT_FALSE(window.actions().previousView->isEnabled());

    QTest::keyClick(&window, Qt::Key_G, Qt::ControlModifier);
    auto *const dialog = window.findChild<Tsb::GoToTimeDialog *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    QTest::keyClicks(dialog->findChild<QLineEdit *>(), "2021-01-01 12:00:00");
    QTest::keyClick(dialog->findChild<QLineEdit *>(), Qt::Key_Return);
    EXPECT_EQ(timeToString(axis->middle(), "%Y-%m-%d %H:%M:%S"), "2021-01-01 12:00:00");
    EXPECT_TRUE(window.actions().previousView->isEnabled());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(axis->timeScale(), home);
    EXPECT_EQ(window.shownRecord(), store->at(3)) << "the key went to one command only";

    axis->goToTime(store->at(0)->beginTime);
    window.setDatastore(std::make_shared<Datastore>());
    EXPECT_FALSE(window.actions().previousView->isEnabled()) << "places in other data";
}

TEST_F(MainWindowBaseTest, FollowNowIsKeptInStepBothWays)
{
    window.actions().followNow->setChecked(true);
    EXPECT_TRUE(window.browser()->timeView()->navigator()->isFollowingNow());
    window.browser()->timeView()->setFollowNow(false);
    EXPECT_FALSE(window.actions().followNow->isChecked());
}

TEST_F(MainWindowBaseTest, DocksAtTheSidesReachDownBesideTheLog)
{
    EXPECT_EQ(window.corner(Qt::BottomLeftCorner), Qt::LeftDockWidgetArea);
    EXPECT_EQ(window.corner(Qt::BottomRightCorner), Qt::RightDockWidgetArea);
}

TEST_F(MainWindowBaseTest, WhatIsMeasuredIsCopiedAsATableInTheProgramsNumbers)
{
    window.uiInfo()->setData(testMetadata({"a", "b", "c"}, {}, {"t\tmean"}), {});
    window.uiInfo()->publish();
    for (int i = 0; i < store->size(); ++i)
        store->at(i)->variables = RealVector(1, i == 4 ? noValue : 0.1 * i + 100000);
    window.show();
    settle();
    window.browser()->addDiagnosticPlot("t\tmean");
    window.browser()->addDiagnosticPlot("t\tmean"); // whose curve is told once
    auto *const dock = window.findChild<MeasuringDock *>();
    EXPECT_EQ(dock->objectName(), "measuringDock") << "by which layouts know its place";
    window.docks()->log()->raise();
    settle();
    const auto copied = [&] {
        settle();
        dock->copy();
        return QGuiApplication::clipboard()->text();
    };
    const QString titles = "Curve\tUnit\tCursor 1\tCursor 2\tDifference\tLeast\tGreatest\tMean\tCount\n";
    EXPECT_EQ(copied(), titles);
    Tsb::MeasuringCursors &cursors = *window.browser()->measuringCursors();
    cursors.set(0, store->at(6)->midTime);
    QTest::qWait(100);
    EXPECT_FALSE(dock->table()->visibleRegion().isEmpty()) << "it comes from behind its tab";
    EXPECT_EQ(copied(), titles + "Time\tUTC\t2017-07-14 02:41:05\t\t\t\t\t\t\n" + "t mean\t\t100000.6\t\t\t\t\t\t\n");
    cursors.set(1, store->at(2)->midTime);
    const QString curve = "t mean\t\t100000.6\t100000.2\t-0.4\t100000.2\t100000.6\t100000.4\t4\n";
    EXPECT_EQ(copied(), titles + "Time\tUTC\t2017-07-14 02:41:05\t2017-07-14 02:40:25\t-0:00:40\t\t\t\t\n" + curve);
    dock->table()->selectRow(1);
    EXPECT_EQ(copied(), titles + curve);
    dock->table()->clearSelection();
    window.browser()->closeAllViews();
    settle();
    QTest::qWait(400);
    EXPECT_EQ(copied().count('\n'), 2);
    window.setDatastore(nullptr);
    EXPECT_EQ(copied(), titles);
}

TEST(Durations, HaveDaysAndFractionsWhereThereAreAny)
{
    const struct {
        std::int64_t ticks;
        const char *text;
    } table[] = {{0, "0:00:00"},
                 {3723 * ticksPerSecond, "1:02:03"},
                 {-59'500 * ticksPerMillisecond, "-0:00:59.500"},
                 {2 * ticksPerDay + 5 * ticksPerSecond, "2 d 0:00:05"},
                 {std::numeric_limits<std::int64_t>::min(), "-10675199 d 2:48:05.477"}};
    for (const auto &row : table)
        EXPECT_EQ(durationText(row.ticks), row.text);
}

TEST_F(MainWindowBaseTest, TheStatisticsGoToTheLogDock)
{
    window.actions().inversionStats->trigger();
    QTest::qWait(10);
    const auto *log = window.findChild<QDockWidget *>("logDock")->findChild<QPlainTextEdit *>();
    EXPECT_TRUE(log->toPlainText().contains("Inversion statistics report:")) << log->toPlainText().toStdString();
    EXPECT_TRUE(log->toPlainText().contains("dist_name | file_name"));
}

TEST(AboutText, FillsTenMarkersInOnePass)
{
    const QString text = aboutText("Morvantide", "<p>%1 of it</p>");
    EXPECT_TRUE(text.startsWith("<h1>Morvantide</h1><p>version: " + BuildInfo::version()));
    EXPECT_TRUE(text.contains("<p>%1 of it</p><p><small>Qt run-time: 5."));
    EXPECT_TRUE(text.contains(QSysInfo::kernelType() + ' ' + QSysInfo::kernelVersion() + "</p>"));
}
