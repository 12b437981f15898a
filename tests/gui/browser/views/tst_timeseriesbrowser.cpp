#include "gui/browser/controls/header.h"
#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "support/gestures.h"
#include "support/logcatcher.h"
#include "support/plotstore.h"
#include "support/savedialog.h"
#include "support/stripview.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

using Tsb::View;

std::vector<Tsb::ViewKind> testKinds()
{
    return {Tsb::viewKind<StripView>(QStringLiteral("spectrogram")), Tsb::viewKind<PlainView>(QStringLiteral("plain"))};
}

class BrowserTest : public ::testing::Test {
protected:
    BrowserTest()
    {
        for (int i = 0; i < 20; ++i)
            store.addFullRecord(testRecord(i * 10, i * 10 + 6, i % 2));
        browser = std::make_unique<Tsb::TimeSeriesBrowser>(uiInfo, nullptr, testKinds());
        browser->resize(900, 500);
        browser->setDatastore(&store);
        browser->show();
        settle();
        browser->timeView()->setTimeScale({testStart, ticksPerSecond, 0});
        QObject::connect(browser.get(), &Tsb::TimeSeriesBrowser::recordChosen, browser.get(),
                         &Tsb::TimeSeriesBrowser::selectRecord);
    }
    StripView *addStrip()
    {
        auto *const view = new StripView;
        browser->addView(view);
        settle();
        return view;
    }
    QVariantMap entry(const QString &type, const QVariant &settings = QVariant())
    {
        QVariantMap map{{QStringLiteral("type"), type}};
        if (settings.isValid())
            map.insert(QStringLiteral("settings"), settings);
        return map;
    }
    Tsb::Header *header() const { return browser->findChild<Tsb::Header *>(); }
    QWidget *addPlotRow() const { return browser->findChild<QToolButton *>()->parentWidget(); }
    /// Left and right ends of a frame's contents, on the screen.
    static QPair<int, int> contentsOf(const QFrame *frame)
    {
        return {frame->mapToGlobal(frame->contentsRect().topLeft()).x(),
                frame->mapToGlobal(frame->contentsRect().topRight()).x()};
    }
    /// Drags downwards to those distances from the start, one after the other.
    static void drag(QWidget *widget, const QPoint &start, const QVector<int> &steps)
    {
        QVector<QPoint> way;
        for (const int dy : steps)
            way << start + QPoint(0, dy);
        dragMouse(widget, start, way);
        settle();
    }

    Datastore store;
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    std::unique_ptr<Tsb::TimeSeriesBrowser> browser;
};

TEST_F(BrowserTest, PlotsStandUnderTheAxis)
{
    StripView *const view = addStrip();
    const auto expectAligned = [&] { EXPECT_EQ(contentsOf(view->plot()), contentsOf(browser->timeView())); };
    expectAligned();
    EXPECT_EQ(header()->splitter()->sizes().value(0), 110);
    header()->splitter()->setSizes({250, 500});
    Q_EMIT header()->splitter()->splitterMoved(250, 1);
    settle();
    expectAligned();
    EXPECT_EQ(header()->splitter()->sizes().value(0), 250);
    browser->resize(1200, 400);
    settle();
    expectAligned();
    EXPECT_EQ(header()->splitter()->sizes().value(0), 250) << "the axis takes what the window grows";
    browser->setLeftColumnWidth(180);
    settle();
    expectAligned();
    EXPECT_EQ(browser->leftColumnWidth(), 180);
    browser->setLeftColumnWidth(1'000'000);
    settle();
    expectAligned();
    EXPECT_EQ(browser->width(), 1200) << "not wider than there is room";
    Tsb::Header unseen;
    unseen.setLeftColumn(130);
    unseen.resize(800, 40);
    unseen.show();
    settle();
    EXPECT_EQ(unseen.leftColumn(), 130);
    header()->splitter()->setSizes({1, 1000});
    Q_EMIT header()->splitter()->splitterMoved(1, 1);
    settle();
    expectAligned();
    view->setMinimumHeight(2000);
    settle();
    expectAligned();
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

TEST_F(BrowserTest, KeysZoomAboutTheRecordOrTheMiddle)
{
    StripView *const view = addStrip();
    const int middle = browser->timeView()->contentsRect().width() / 2;
    const RecordTime under = browser->timeScale().tickAt(middle);
    QTest::keyClick(view->plot(), Qt::Key_Plus);
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 9'000'000);
    EXPECT_EQ(browser->timeScale().tickAt(middle), under);
    browser->selectRecord(store.at(5));
    const int x = browser->timeScale().pixelAt(store.at(5)->midTime);
    QTest::keyClick(view->plot(), Qt::Key_Minus);
    EXPECT_EQ(browser->timeScale().ticksPerPixel, 10'000'000);
    EXPECT_NEAR(browser->timeScale().pixelAt(store.at(5)->midTime), x, 1);
}

TEST_F(BrowserTest, ARecordWithoutEndStandsAtItsBegin)
{
    StripView *const view = addStrip();
    const auto added = testRecord(5000, 5000, 0);
    added->endTime = {};
    store.addFullRecord(added);
    const auto endless = store.at(store.size() - 1);
    browser->selectRecord(endless);
    const int right = browser->timeView()->contentsRect().width() - 10;
    EXPECT_EQ(browser->timeScale().pixelAt(endless->beginTime), right) << "scrolled into sight";
    EXPECT_EQ(endless->midTime, endless->beginTime) << "where its mark and label stand";
    QTest::keyClick(view->plot(), Qt::Key_Minus);
    EXPECT_EQ(browser->timeScale().pixelAt(endless->beginTime), right) << "zoomed about it";
}

TEST_F(BrowserTest, SetupGoesRoundAndIsTakenByValue)
{
    QVariantMap settings{{QStringLiteral("height"), 90}, {QStringLiteral("note"), QStringLiteral("kept")}};
    const QVariant setup =
        QVariantList{entry(QStringLiteral("spectrogram"), settings), entry(QStringLiteral("scatterplot")),
                     entry(QStringLiteral("plain")), 17, entry(QStringLiteral("spectrogram"))};
    addStrip();
    browser->setSetup(setup);
    const QVariant expected = QVariantList{entry(QStringLiteral("spectrogram"), settings),
                                           entry(QStringLiteral("plain")), entry(QStringLiteral("spectrogram"))};
    EXPECT_EQ(browser->setup(), expected) << "before the old views are gone, too";
    settle();
    EXPECT_EQ(browser->setup(), expected);
    EXPECT_EQ(browser->views().size(), 3);
    EXPECT_EQ(browser->views().first()->height(), 90);
    browser->views().last()->setTemporary(true);
    EXPECT_EQ(browser->setup().toList().size(), 2) << "temporary views aren't kept";
    const QVariant nonsense[] = {QVariant(), 5, QStringLiteral("x"), QVariantMap{{QStringLiteral("type"), 3}},
                                 QVariantList{QVariantList{1}, QVariant()}};
    for (const QVariant &value : nonsense) {
        browser->setSetup(value);
        settle();
        EXPECT_FALSE(browser->hasViews());
    }
}

TEST_F(BrowserTest, ASetupOfTenThousandViewsIsCut)
{
    QVariantList list;
    for (int i = 0; i < 10'000; ++i)
        list.append(entry(QStringLiteral("plain")));
    const LogCatcher log;
    browser->setSetup(list);
    EXPECT_EQ(browser->views().size(), 200);
    EXPECT_EQ(log.entries().size(), 1);
    EXPECT_EQ(log.complaints().size(), 1);
}

TEST_F(BrowserTest, AbsurdHeightsAreHeld)
{
    const struct {
        QVariant given;
        int height;
    } cases[] = {{0, 60},       {-5, 60},   {QStringLiteral("high"), 60}, {qQNaN(), 60}, {3, 16}, {qInf(), 60},
                 {1e300, 4096}, {200, 200}, {QVariantList{1}, 60},        {true, 60}};
    for (const auto &c : cases) {
        StripView view;
        view.setSettings(QVariantMap{{QStringLiteral("height"), c.given}});
        EXPECT_EQ(view.minimumHeight(), c.height) << c.given.toString().toStdString();
    }
}

TEST_F(BrowserTest, ClosingViews)
{
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    StripView foreign;
    browser->closeView(&foreign);
    EXPECT_FALSE(foreign.isDiscarded());
    second->setTemporary(true);
    QTest::mouseClick(second->findChild<QToolButton *>(), Qt::LeftButton);
    EXPECT_FALSE(second->isTemporary()) << "the first click makes it lasting";
    QTest::mouseClick(second->findChild<QToolButton *>(), Qt::LeftButton);
    settle();
    EXPECT_EQ(browser->views(), (QVector<View *>{first, third}));
    StripView *const fourth = addStrip();
    Q_EMIT third->requestCloseBelow(third);
    EXPECT_EQ(browser->views(), (QVector<View *>{first}));
    fourth->fittedWidths.clear();
    browser->allFitScale();
    EXPECT_TRUE(fourth->fittedWidths.isEmpty()) << "what is closing is passed over";
    settle();
    addStrip()->setTemporary(true);
    browser->closeTempViews();
    settle();
    EXPECT_EQ(browser->views(), (QVector<View *>{first}));
    browser->viewActions()[1]->trigger();
    settle();
    EXPECT_FALSE(browser->hasViews());
}

TEST_F(BrowserTest, PicturesHoldAllViewsHoweverFarTheyAreScrolled)
{
    const QAction *const save = browser->viewActions()[2], *const copy = browser->viewActions()[3];
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled()) << "without views";
    for (int i = 0; i < 12; ++i)
        addStrip();
    EXPECT_TRUE(save->isEnabled() && copy->isEnabled());
    const auto image = [this](double ratio) { return PictureFile::imageOf(browser->drawing(), ratio); };
    const QImage whole = image(1);
    EXPECT_GT(whole.height(), browser->height());
    QScrollBar *const bar = browser->findChild<QScrollArea *>()->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    bar->setValue(bar->maximum());
    settle();
    EXPECT_EQ(image(1), whole);
    EXPECT_EQ(image(4).size(), 4 * whole.size());
    const Tsb::Plot *const last = browser->views().last()->findChild<Tsb::Plot *>();
    // The last plot stands at the lower end, above the margin and its view's own.
    const QImage plot = last->image().convertToFormat(QImage::Format_RGB32);
    const QPoint corner = last->mapTo(browser->views().last(), last->contentsRect().topLeft());
    const QRect frame = browser->drawing().frame;
    const int top = whole.height() - 4 - browser->views().last()->height() + corner.y();
    const int left = last->mapTo(browser.get(), last->contentsRect().topLeft()).x() - frame.left();
    EXPECT_EQ(whole.copy(QRect(QPoint(left, top), plot.size())).convertToFormat(QImage::Format_RGB32), plot);

    browser->viewActions()[3]->trigger();
    EXPECT_EQ(QApplication::clipboard()->image().size(), 2 * whole.size());
    browser->setEnabled(false);
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled());
    browser->setEnabled(true);
    browser->closeAllViews();
    settle();
    EXPECT_FALSE(save->isEnabled() || copy->isEnabled());
}

TEST_F(BrowserTest, PicturesAreSavedAsTheChosenKindAndFailuresAreTold)
{
    addStrip();
    const QTemporaryDir folder;
    const auto saveAs = [&](const QString &name, const QString &filter) {
        return saveByDialog(browser->viewActions()[2], folder.filePath(name), filter);
    };
    const QSize size = browser->drawing().frame.size();
    EXPECT_EQ(saveAs("1.png", "pixels (*.png)") + saveAs("2.png", "2 times") + saveAs("4.png", "4 times"), "");
    for (const int ratio : {1, 2, 4})
        EXPECT_EQ(QImage(folder.filePath(QString("%1.png").arg(ratio))).size(), ratio * size) << ratio;
    EXPECT_EQ(saveAs("a.svg", ".svg") + saveAs("a.pdf", ".pdf"), "");
    EXPECT_TRUE(contentOf(folder.filePath("a.svg")).contains("<text"));
    EXPECT_TRUE(contentOf(folder.filePath("a.pdf")).endsWith("%%EOF\n"));

    const QByteArray before = contentOf(folder.filePath("a.pdf"));
    const QStringList names = filesIn(folder.path());
    {
        const FullDisk disk(100);
        EXPECT_TRUE(saveAs("a.pdf", ".pdf").contains("a.pdf"));
        EXPECT_TRUE(saveAs("new.svg", ".svg").contains("new.svg"));
    }
    EXPECT_EQ(contentOf(folder.filePath("a.pdf")), before);
    EXPECT_EQ(filesIn(folder.path()), names);
    ASSERT_TRUE(QDir(folder.path()).mkdir("b.png"));
    EXPECT_FALSE(PictureFile::write(browser->drawing(), folder.filePath("b.png"), 1).isEmpty());
    EXPECT_TRUE(QDir(folder.filePath("b.png")).isEmpty());
}

TEST_F(BrowserTest, DraggingAViewReordersTheStack)
{
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    for (StripView *view : {first, second, third})
        view->kept = QVariant::fromValue(int(view == first ? 1 : view == second ? 2 : 3));
    const auto order = [this] {
        QVector<int> numbers;
        for (const QVariant &value : browser->setup().toList())
            numbers << value.toMap().value(QStringLiteral("settings")).toInt();
        return numbers;
    };
    QWidget *const grip = first->findChild<QToolButton *>()->parentWidget();
    drag(grip, {8, 50}, {40, 200, 2000});
    EXPECT_EQ(order(), (QVector<int>{2, 3, 1}));
    EXPECT_LT(first->geometry().bottom(), addPlotRow()->y()) << "never below the row that adds plots";
    EXPECT_GT(first->y(), third->y());
    EXPECT_EQ(browser->views(), (QVector<View *>{first, second, third})) << "the order of creation stays";
    drag(first->findChild<QToolButton *>()->parentWidget(), {8, 50}, {-30, -35, -62});
    EXPECT_EQ(order(), (QVector<int>{2, 1, 3}));
    drag(first->findChild<QToolButton *>()->parentWidget(), {8, 50}, {5});
    EXPECT_EQ(order(), (QVector<int>{2, 1, 3})) << "a small movement changes nothing";
}

TEST_F(BrowserTest, TabGoesFromTopToBottom)
{
    const auto focusedWidgets = [this] {
        QVector<QWidget *> found;
        QWidget *const start = addPlotRow()->findChild<QToolButton *>();
        start->setFocus();
        do {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            found << QApplication::focusWidget();
        } while (found.last() != start && found.size() < 30);
        return found;
    };
    const auto wanted = [this](const QVector<StripView *> &views) {
        QVector<QWidget *> widgets;
        for (StripView *view : views)
            widgets << view->findChild<QToolButton *>() << view->plot();
        return widgets << addPlotRow()->findChild<QToolButton *>();
    };
    browser->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(browser.get()));
    StripView *const first = addStrip(), *const second = addStrip(), *const third = addStrip();
    EXPECT_EQ(focusedWidgets(), wanted({first, second, third}));
    drag(first->findChild<QToolButton *>()->parentWidget(), {8, 50}, {40, 200, 2000});
    EXPECT_EQ(focusedWidgets(), wanted({second, third, first}));
    StripView *const late = addStrip();
    drag(late->findChild<QToolButton *>()->parentWidget(), {8, 50}, {-2000});
    EXPECT_EQ(focusedWidgets(), wanted({late, second, third, first}));
    delete second;
    settle();
    EXPECT_EQ(focusedWidgets(), wanted({late, third, first}));
}

TEST_F(BrowserTest, AViewMayCloseWhileItIsDragged)
{
    StripView *const first = addStrip();
    addStrip();
    QWidget *const holder = first->parentWidget();
    const QPoint inside = first->pos() + QPoint(8, 50);
    sendMouse(holder, QEvent::MouseButtonPress, inside);
    EXPECT_EQ(browser->setup().toList().size(), 2) << "the dragged view counts at its place";
    browser->setSetup(QVariantList{entry(QStringLiteral("plain"))});
    settle();
    sendMouse(holder, QEvent::MouseMove, inside);
    sendMouse(holder, QEvent::MouseButtonRelease, inside);
    settle();
    EXPECT_EQ(browser->setup().toList().size(), 1);
    EXPECT_LE(browser->views().first()->y(), 5) << "no gap is left";
}

TEST_F(BrowserTest, AViewKeepsItsPlaceWhenOthersCloseDuringItsDrag)
{
    for (int closed = 0; closed < 4; ++closed) {
        browser->closeAllViews();
        settle();
        QVector<StripView *> views;
        for (int i = 0; i < 4; ++i) {
            views << addStrip();
            views.last()->kept = i;
        }
        QWidget *const holder = views[2]->parentWidget();
        const QPoint inside = views[2]->pos() + QPoint(8, 50);
        sendMouse(holder, QEvent::MouseButtonPress, inside);
        views[closed]->discard();
        settle();
        sendMouse(holder, QEvent::MouseButtonRelease, inside);
        settle();
        QVariantList expected{0, 1, 2, 3}, order;
        expected.removeAt(closed);
        for (const QVariant &entry : browser->setup().toList())
            order << entry.toMap()["settings"];
        EXPECT_EQ(order, expected);
        for (const View *view : browser->views())
            EXPECT_LT(view->y(), addPlotRow()->y());
    }
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

TEST_F(BrowserTest, SpectrogramsFromTheMenu)
{
    auto *const action = browser->addPlotActions().first();
    EXPECT_EQ(action->menu(), nullptr) << "no spectra, no submenu";
    uiInfo->setData(nullptr, {testInfo("ions", {})});
    uiInfo->publish();
    action->trigger();
    auto *const only = dynamic_cast<StripView *>(browser->views().first());
    EXPECT_EQ(only->spectra, QSet<QString>{"id-ions"});
    EXPECT_EQ(only->fittedWidths.size(), 1);
    uiInfo->setData(nullptr, {testInfo("particles pos", {}), testInfo("ions", {}), testInfo("particles neg", {})});
    uiInfo->publish();
    ASSERT_NE(action->menu(), nullptr);
    ASSERT_EQ(action->menu()->actions().size(), 2);
    EXPECT_EQ(action->menu()->actions()[0]->text(), QStringLiteral("Ions"));
    action->menu()->actions()[1]->trigger();
    auto *const both = dynamic_cast<StripView *>(browser->views().last());
    const QSet<QString> particles{"id-particles pos", "id-particles neg"};
    EXPECT_EQ(both->spectra, particles);
    action->trigger();
    EXPECT_TRUE(dynamic_cast<StripView *>(browser->views().last())->spectra.isEmpty());
    browser->closeAllViews();
    settle();
    browser->addDefaultStack();
    ASSERT_EQ(browser->views().size(), 2);
    EXPECT_EQ(dynamic_cast<StripView *>(browser->views()[0])->spectra, particles);
    browser->setEnabled(false);
    EXPECT_FALSE(action->isEnabled());
}

TEST_F(BrowserTest, ClickingAnActionWithASubmenuTriggersIt)
{
    Tsb::PlotMenu menu;
    QMenu submenu;
    submenu.addAction(QStringLiteral("inner"));
    QAction *const action = menu.addAction(QStringLiteral("outer"));
    action->setMenu(&submenu);
    QSignalSpy triggered(action, &QAction::triggered);
    menu.popup(QPoint(100, 100));
    const QPoint inside = menu.actionGeometry(action).center();
    QTest::mouseRelease(&menu, Qt::LeftButton, Qt::NoModifier, inside);
    EXPECT_EQ(triggered.count(), 0) << "the release of the click that opened the menu";
    EXPECT_TRUE(menu.isVisible());
    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, inside);
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(menu.isVisible());
    EXPECT_FALSE(submenu.isVisible());
}

TEST_F(BrowserTest, ARequestedViewIsScrolledIntoSight)
{
    for (int i = 0; i < 20; ++i)
        addStrip();
    StripView *const last = addStrip();
    browser->ensureViewVisible(last);
    settle();
    EXPECT_FALSE(last->visibleRegion().isEmpty());
    auto *const doomed = new QWidget;
    browser->ensureViewVisible(doomed);
    delete doomed;
    settle();
}

TEST_F(BrowserTest, AViewMayGoBehindItsContextMenu)
{
    StripView *const view = addStrip();
    bool hadMenu = false;
    QTimer::singleShot(100, browser.get(), [&] {
        hadMenu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        browser->setSetup(QVariantList()); // as where other data are shown
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, view->mapToGlobal({5, 5}));
    QApplication::sendEvent(view, &event);
    QTest::qWait(200);
    EXPECT_TRUE(hadMenu);
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(BrowserTest, DiesWithItsViewsOpen)
{
    addStrip();
    addStrip();
    browser->selectRecord(store.at(1));
    browser.reset();
    EXPECT_EQ(store.at(1).use_count(), 1);
}

} // namespace
