#include "browserfixture.h"
#include "gui/browser/controls/header.h"

#include <QMenu>
#include <QSignalSpy>
#include <QSplitter>
#include <QTableWidget>
#include <QTest>

namespace {

/// Left and right ends of a frame's contents, on the screen.
QPair<int, int> contentsOf(const QFrame *frame)
{
    return {frame->mapToGlobal(frame->contentsRect().topLeft()).x(),
            frame->mapToGlobal(frame->contentsRect().topRight()).x()};
}

TEST_F(BrowserTest, PlotsStandUnderTheAxis)
{
    StripView *const view = addStrip();
    QSplitter *const splitter = browser->findChild<Tsb::Header *>()->splitter();
    const auto alignedColumn = [&] {
        settle();
        EXPECT_EQ(contentsOf(view->plot()), contentsOf(browser->timeView()));
        return splitter->sizes().value(0);
    };
    const auto dragColumn = [&](int width) {
        splitter->setSizes({width, 1000});
        Q_EMIT splitter->splitterMoved(width, 1);
    };
    EXPECT_EQ(alignedColumn(), 110);
    browser->resize(1200, 400);
    dragColumn(250);
    EXPECT_EQ(alignedColumn(), 250);
    browser->resize(1300, 400);
    EXPECT_EQ(alignedColumn(), 250) << "the axis takes what the window grows";
    browser->setLeftColumnWidth(180);
    alignedColumn();
    EXPECT_EQ(browser->leftColumnWidth(), 180);
    browser->setLeftColumnWidth(1'000'000);
    alignedColumn();
    EXPECT_EQ(browser->width(), 1300) << "not wider than there is room";
    dragColumn(1);
    view->setMinimumHeight(2000);
    alignedColumn();
    Tsb::Header unseen;
    unseen.setLeftColumn(130);
    unseen.resize(800, 40);
    unseen.show();
    settle();
    EXPECT_EQ(unseen.leftColumn(), 130);
}

TEST_F(BrowserTest, KeysSetMeasuringCursorsAndEscDropsThemBeforeItUnselects)
{
    StripView *const view = addStrip(), *const other = addStrip();
    browser->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(browser.get()));
    view->plot()->setFocus();
    const auto press = [&](int key) {
        QTest::keyClick(view->plot(), Qt::Key(key));
        settle();
    };
    const Tsb::MeasuringCursors &cursors = *browser->measuringCursors();
    const auto columns = [&] {
        QVector<int> result;
        for (const auto &time : cursors.times())
            result << (time ? browser->timeScale().pixelAt(*time) : -1);
        return result;
    };
    press(Qt::Key_1);
    EXPECT_EQ(columns(), (QVector<int>{browser->timeView()->contentsRect().width() / 3, -1}))
        << "no pointer, no record";
    browser->selectRecord(store.at(5));
    press(Qt::Key_1);
    EXPECT_EQ(cursors.times()[0], store.at(5)->midTime);
    sendMouse(view->plot(), QEvent::MouseMove, {301, 20}, Qt::NoButton);
    const QImage *const image = &other->plot()->image();
    const qint64 drawn = image->cacheKey();
    press(Qt::Key_2);
    EXPECT_EQ(columns(), (QVector<int>{53, 300}));
    const auto lineAt = [&](int column) {
        return other->plot()->grab().toImage().pixelColor(other->plot()->contentsRect().left() + column, 25);
    };
    EXPECT_EQ(lineAt(53), QColor(Qt::black));
    EXPECT_EQ(addStrip()->plot()->grab().toImage().pixelColor(54, 25), QColor(Qt::black)) << "also in a new view";
    EXPECT_EQ(image->cacheKey(), drawn) << "cursors are drawn over the image, which stays";

    const QList<QAction *> actions = browser->measuringActions();
    std::vector<std::pair<RecordTime, RecordTime>> exported;
    QObject::connect(browser.get(), &Tsb::TimeSeriesBrowser::spanExportRequested,
                     [&](RecordTime begin, RecordTime end) { exported.emplace_back(begin, end); });
    browser->measuringCursors()->set(0, testStart + Ticks(400 * ticksPerSecond));
    actions[4]->trigger();
    EXPECT_EQ(exported, (std::vector{std::pair(testStart + Ticks(300 * ticksPerSecond), *cursors.times()[0])}));
    actions[3]->trigger();
    EXPECT_EQ(columns()[1], 10);
    EXPECT_NEAR(columns()[0], browser->timeView()->contentsRect().width() - 10, 2);

    press(Qt::Key_Escape);
    EXPECT_FALSE(cursors.areAny());
    EXPECT_FALSE(actions[2]->isEnabled() || actions[3]->isEnabled() || actions[4]->isEnabled());
    EXPECT_NE(browser->currentRecord(), nullptr);
    press(Qt::Key_Escape);
    EXPECT_EQ(browser->currentRecord(), nullptr);
    browser->measuringCursors()->set(0, testStart);
    browser->setDatastore(nullptr);
    EXPECT_FALSE(cursors.areAny()) << "other data";
}

TEST_F(BrowserTest, NumbersSetCursorsUnderThePointerThoughAnotherPartOfTheWindowHasTheFocus)
{
    QWidget window;
    QTableWidget table(1, 1, &window); // in which a number begins a search
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    browser->setParent(&window);
    browser->show();
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto press = [&](int key) {
        QTest::keyClick(window.focusWidget(), Qt::Key(key));
        return browser->measuringCursors()->areAny();
    };
    const auto point = [&](QEvent::Type type) {
        QEvent event(type);
        browser->setAttribute(Qt::WA_UnderMouse, type == QEvent::Enter);
        QCoreApplication::sendEvent(browser.get(), &event);
    };
    table.setFocus();
    EXPECT_FALSE(press(Qt::Key_1));
    point(QEvent::Enter);
    EXPECT_TRUE(press(Qt::Key_1));
    EXPECT_FALSE(press(Qt::Key_Escape)) << "the focus has gone along";
    table.setFocus();
    point(QEvent::Leave);
    EXPECT_FALSE(press(Qt::Key_1));
    browser->setParent(nullptr);
}

TEST_F(BrowserTest, AMarkedSpanOffersItsCommandsAndGoesWithThem)
{
    addStrip();
    Tsb::TimeView *const axis = browser->timeView();
    const auto mark = [&] {
        browser->timeView()->setTimeScale({testStart, ticksPerSecond, 0});
        sendMouse(axis, QEvent::MouseButtonPress, {101, 5}, Qt::LeftButton, Qt::ShiftModifier);
        sendMouse(axis, QEvent::MouseMove, {201, 5});
        sendMouse(axis, QEvent::MouseButtonRelease, {201, 5});
        return browser->findChild<QMenu *>(QStringLiteral("spanMenu"));
    };
    const QImage plain = axis->grab().toImage();
    RecordTime exportedFrom;
    QObject::connect(browser.get(), &Tsb::TimeSeriesBrowser::spanExportRequested,
                     [&](RecordTime begin, RecordTime) { exportedFrom = begin; });
    for (const auto key : {Qt::Key_E, Qt::Key_C, Qt::Key_Escape, Qt::Key_Z}) {
        QMenu *const menu = mark();
        ASSERT_TRUE(menu->isVisible()) << key;
        EXPECT_NE(axis->grab().toImage(), plain);
        QTest::keyClick(menu, key);
        settle();
        EXPECT_FALSE(menu->isVisible());
        if (key == Qt::Key_C)
            browser->measuringCursors()->drop();
        EXPECT_TRUE(key == Qt::Key_Z || axis->grab().toImage() == plain) << "the mark goes: " << key;
    }
    EXPECT_EQ(exportedFrom, testStart + Ticks(100 * ticksPerSecond));
    EXPECT_EQ(browser->timeScale().pixelAt(exportedFrom), 10);
}

TEST_F(BrowserTest, GesturesOnAPlotMoveTheAxisAndAllPlotsAndLeaveTheirWayBack)
{
    StripView *const view = addStrip(), *const other = addStrip();
    Tsb::TimeNavigator *const axis = browser->timeView()->navigator();
    const TimeScale home = browser->timeScale();
    dragMouse(view->plot(), {300, 20}, {{310, 20}, {335, 20}, {360, 20}}, Qt::MiddleButton);
    const TimeScale panned = browser->timeScale();
    EXPECT_EQ(panned.tickAt(360), home.tickAt(300));
    turnWheel(view->plot(), {101, 20}, {0, 120});
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 9'000'000);
    EXPECT_EQ(other->plot()->timeScale(), browser->timeScale());
    QTest::qWait(450);
    browser->fitTimescale(testStart, testStart + Ticks(200 * ticksPerSecond));
    browser->resize(700, 500); // fitted once more at the new width
    settle();
    axis->goToPreviousView();
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 9'000'000);
    axis->goToPreviousView();
    EXPECT_EQ(browser->timeScale(), panned);
    axis->goToPreviousView();
    EXPECT_EQ(browser->timeScale(), home);
    EXPECT_FALSE(axis->hasPreviousView());
}

TEST_F(BrowserTest, ChoosingARecordSelectsItOnceAndScrolls)
{
    StripView *const first = addStrip(), *const second = addStrip();
    QSignalSpy chosen(browser.get(), &Tsb::TimeSeriesBrowser::recordChosen);
    QTest::mouseClick(first->plot(), Qt::LeftButton, Qt::NoModifier, QPoint(24, 20));
    EXPECT_EQ(browser->currentRecord(), store.at(2));
    EXPECT_EQ(second->plot()->currentRecord(), store.at(2));
    EXPECT_EQ(chosen.count(), 2) << "the plot's wish and the browser's answer";
    browser->selectRecord(store.at(2));
    EXPECT_EQ(chosen.count(), 2);
    browser->timeView()->setTimeScale({testStart, ticksPerSecond / 100, 0});
    QTest::keyClick(first->plot(), Qt::Key_Down);
    EXPECT_EQ(browser->currentRecord(), store.at(3));
    const int right = browser->timeView()->contentsRect().width() - 10;
    EXPECT_EQ(browser->timeScale().pixelAt(store.at(3)->endTime), right);
    browser->setDisableAutoscroll(true);
    QTest::keyClick(first->plot(), Qt::Key_Down);
    EXPECT_EQ(browser->timeScale().pixelAt(store.at(3)->endTime), right) << "no scrolling during a pan";
    StripView *const late = addStrip();
    EXPECT_EQ(late->plot()->currentRecord(), store.at(4));
    QTest::keyClick(first->plot(), Qt::Key_Escape);
    EXPECT_FALSE(browser->currentRecord());
}

TEST_F(BrowserTest, TheTimeCursorRunsThroughAll)
{
    StripView *const first = addStrip(), *const second = addStrip();
    QSignalSpy told(browser.get(), &Tsb::TimeSeriesBrowser::timeCursorChanged);
    const QImage axis = browser->timeView()->grab().toImage();
    const auto move = [first] { sendMouse(first->plot(), QEvent::MouseMove, {200, 20}, Qt::NoButton); };
    move();
    EXPECT_EQ(first->plot()->cursor(), 200);
    EXPECT_EQ(second->plot()->cursor(), 200);
    EXPECT_NE(browser->timeView()->grab().toImage(), axis);
    move();
    EXPECT_EQ(told.count(), 1) << "equal values end the ring";
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(first->plot(), &leave);
    EXPECT_EQ(second->plot()->cursor(), -1);
    EXPECT_EQ(browser->timeView()->grab().toImage(), axis);
    EXPECT_EQ(told.count(), 2);
    move();
    EXPECT_EQ(second->plot()->cursor(), 200);
    browser->closeView(first);
    EXPECT_EQ(second->plot()->cursor(), -1) << "it goes with the plot that the pointer was on";
}

TEST_F(BrowserTest, KeysZoomAboutTheMiddleOrTheRecordWhichWithoutEndStandsAtItsBegin)
{
    StripView *const view = addStrip();
    const int middle = browser->timeView()->contentsRect().width() / 2;
    const RecordTime under = browser->timeScale().tickAt(middle);
    QTest::keyClick(view->plot(), Qt::Key_Plus);
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 9'000'000);
    EXPECT_EQ(browser->timeScale().tickAt(middle), under);
    const auto added = testRecord(5000, 5000, 0);
    added->endTime = {};
    store.addFullRecord(added);
    const auto endless = store.at(store.size() - 1);
    browser->selectRecord(endless);
    const int right = browser->timeView()->contentsRect().width() - 10;
    EXPECT_EQ(browser->timeScale().pixelAt(endless->beginTime), right) << "scrolled into sight";
    EXPECT_EQ(endless->midTime, endless->beginTime) << "where its mark and label stand";
    QTest::keyClick(view->plot(), Qt::Key_Minus);
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 10'000'000);
    EXPECT_EQ(browser->timeScale().pixelAt(endless->beginTime), right) << "zoomed about it";
}

TEST_F(BrowserTest, FitsUseTheWidthOfTheAxis)
{
    StripView *const view = new StripView;
    browser->addView(view);
    browser->allFitScale(); // no event has run since
    const int width = browser->timeView()->contentsRect().width();
    EXPECT_EQ(view->fittedWidths, QVector<int>{width});
    browser->fitTimescale(testStart, testStart + Ticks(ticksPerDay));
    EXPECT_EQ(browser->timeScale().ticksPerPixel, ticksPerDay / (width - 20));
    browser->resize(1300, 500);
    settle();
    const int wider = browser->timeView()->contentsRect().width();
    EXPECT_GT(wider, width);
    EXPECT_EQ(browser->timeScale().ticksPerPixel, ticksPerDay / (wider - 20)) << "fitted again at the settled width";
}

} // namespace
