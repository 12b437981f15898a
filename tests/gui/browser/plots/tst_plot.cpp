#include "columns/recordpicking.h"
#include "gui/browser/plots/plot.h"
#include "support/gestures.h"
#include "support/plotstore.h"
#include "support/seeds.h"

#include <QPainter>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <random>

namespace {

/// Bars of the records' variables in the columns asked for, written straight into the bits.
class BarPlot : public Tsb::Plot {
public:
    std::vector<PixelRange> drawn;
    int paints = 0;

protected:
    void drawRange(QPainter &painter, int first, int last) override
    {
        drawn.emplace_back(first, last);
        clearRange(painter, first, last);
        auto &target = dynamic_cast<QImage &>(*painter.device());
        if (!datastore())
            return;
        for (const auto &record : datastore()->records()) {
            const int from = std::max(first, timeScale().pixelAt(record->beginTime));
            const int to = std::min(last, timeScale().pixelAt(record->endTime) + 1);
            const QRgb color = 0xFF000000u | (unsigned(record->opmode + 1) * 0x203050u & 0xFFFFFFu) |
                               (record->provisional ? 0xFFu : 0u);
            for (int y = 0; y < target.height() / (record->opmode + 1); ++y) {
                auto *line = reinterpret_cast<QRgb *>(target.scanLine(y));
                for (int x = from; x < to; ++x)
                    line[x] = color;
            }
        }
    }
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        Plot::paintEvent(event);
    }
};

class PlotTest : public ::testing::Test {
protected:
    PlotTest()
    {
        store.setLimitRecords(false);
        for (int i = 0; i < 40; ++i)
            store.addFullRecord(testRecord(i * 10, i * 10 + 6, i % 3 == 2));
        plot.setUpdateTimer(&timer);
        plot.resize(302, 52);
        plot.setTimeScale({testStart, ticksPerSecond, 0});
        plot.setDatastore(&store);
        plot.show();
        plot.grab();
        plot.drawn.clear();
        QObject::connect(&plot, &Tsb::Plot::recordChosen, [this](const std::shared_ptr<Record> &record) {
            chosen = record;
            ++choices;
            plot.setCurrentRecord(record);
        });
    }
    QImage picture() { return plot.grab().toImage(); }
    QImage redrawn()
    {
        BarPlot fresh;
        fresh.resize(plot.size());
        fresh.setTimeScale(plot.timeScale());
        fresh.setDatastore(&store);
        fresh.grab();
        return fresh.image();
    }
    void expectLikeRedrawn()
    {
        plot.grab();
        EXPECT_EQ(plot.image(), redrawn());
    }
    void press(int column, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        chosen.reset();
        QTest::mouseClick(&plot, Qt::LeftButton, modifiers, QPoint(column + 1, 20));
    }
    int chosenIndex() const { return chosen ? store.indexOfHead(*chosen) : -1; }

    Datastore store;
    QTimer timer;
    BarPlot plot;
    std::shared_ptr<Record> chosen;
    int choices = 0;
};

TEST_F(PlotTest, DrawsOnlyChangedColumns)
{
    store.upsertFullRecord(testRecord(107, 109, 0));
    expectLikeRedrawn();
    EXPECT_EQ(plot.drawn, std::vector<PixelRange>({PixelRange(106, 111)}));
    plot.drawn.clear();
    store.upsertFullRecord(testRecord(5000, 5010, 0));
    plot.grab();
    EXPECT_TRUE(plot.drawn.empty()) << "out of sight";
    store.upsertFullRecord(testRecord(208, 209, 1));
    plot.setTimeScale({testStart, ticksPerSecond, 20});
    expectLikeRedrawn();
    EXPECT_EQ(plot.drawn, std::vector<PixelRange>({PixelRange(227, 231), PixelRange(0, 20)}));
    plot.drawn.clear();
    plot.resize(202, 52);
    expectLikeRedrawn();
    EXPECT_TRUE(plot.drawn.empty()) << "of a smaller size the left part stays";
    store.setLimitRecords(true);
    store.setMaxRecords(10);
    store.addFullRecord(testRecord(9000, 9001, 0));
    expectLikeRedrawn();
}

using PlotWalk = Seeded<PlotTest>;
INSTANTIATE_TEST_SUITE_P(Seeds, PlotWalk, ::testing::ValuesIn(seeds(20)));

TEST_P(PlotWalk, OfPansResizesAndUpdatesEqualsAFullRedraw)
{
    std::int64_t origin = 0;
    for (int i = 0; i < 300; ++i) {
        if (pick(0, 2) > 0) {
            origin += pick(-40, 40);
            plot.setTimeScale({testStart, ticksPerSecond, origin});
        }
        if (pick(0, 2) > 0) {
            const double begin = pick(-300, 800) / 2.0;
            store.upsertFullRecord(testRecord(begin, begin + pick(0, 20), pick(0, 2)));
        }
        if (pick(0, 20) == 0)
            plot.resize(pick(200, 400), plot.height());
        if (pick(0, 1) == 0) {
            plot.grab();
            ASSERT_EQ(plot.image(), redrawn()) << "step " << i;
        }
    }
}

TEST_F(PlotTest, BurstsArePaced)
{
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&plot));
    QApplication::processEvents();
    const auto change = [this] { store.upsertFullRecord(testRecord(51, 56, 1)); };
    change(); // came in: at once
    QApplication::processEvents();
    plot.paints = 0;
    for (int i = 0; i < 5; ++i) {
        change();
        QApplication::processEvents();
    }
    EXPECT_EQ(plot.paints, 1) << "one at once, the others wait";
    QMetaObject::invokeMethod(&timer, "timeout", Qt::DirectConnection);
    QApplication::processEvents();
    EXPECT_EQ(plot.paints, 2);
    QMetaObject::invokeMethod(&timer, "timeout", Qt::DirectConnection);
    QApplication::processEvents();
    EXPECT_EQ(plot.paints, 2) << "nothing waits any more";
}

/// The cursor's paint brings the image up to date but reaches only its own columns of the screen.
TEST_F(PlotTest, ADeferredRepaintIsNotLostToTheCursor)
{
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&plot));
    const auto screen = [this] {
        QApplication::processEvents();
        return plot.screen()->grabWindow(plot.winId()).toImage();
    };
    const auto change = [this](double begin) {
        const auto record = testRecord(begin, begin + 6, 0);
        record->provisional = true;
        store.updateFullRecord(record);
    };
    screen();
    change(60);
    screen();
    change(100);
    const QImage before = screen();
    plot.setTimeCursor(true, 200);
    screen();
    for (int beat = 0; beat < 3; ++beat) {
        QMetaObject::invokeMethod(&timer, "timeout", Qt::DirectConnection);
        QApplication::processEvents();
    }
    const QImage after = screen();
    EXPECT_NE(after.pixel(104, 40), before.pixel(104, 40));
    EXPECT_EQ(after.convertToFormat(QImage::Format_RGB32), picture().convertToFormat(QImage::Format_RGB32));
}

TEST_F(PlotTest, ClicksPickTheNearestRecordWithShiftOfTheSameMode)
{
    // Record 2 is of the other mode. Of column 22, 3 begins 8 columns on and 1 ended 6 ago.
    const struct {
        int column;
        Qt::KeyboardModifiers modifiers;
        int index;
    } cases[] = {{3, {}, 0},
                 {7, {}, 0},
                 {8, {}, 1},
                 {9, {}, 1},
                 {-20, {}, 0},
                 {0, {}, 0},
                 {22, Qt::ShiftModifier, 1},
                 {24, Qt::ShiftModifier, 3},
                 {22, {}, 2},
                 {255, {}, 25}};
    for (const auto &c : cases) {
        press(c.column, c.modifiers);
        EXPECT_EQ(chosenIndex(), c.index) << "column " << c.column;
    }
    plot.setTimeScale({testStart, ticksPerSecond, -390});
    press(200);
    EXPECT_EQ(chosenIndex(), 39) << "right of the last";
    plot.setCurrentRecord(std::make_shared<Record>(*testRecord(1, 2, 5)));
    press(3, Qt::ShiftModifier);
    EXPECT_FALSE(chosen) << "no record of that mode";
}

TEST_F(PlotTest, DraggingPicksWithControlForTheMode)
{
    press(3);
    QTest::mousePress(&plot, Qt::LeftButton, Qt::NoModifier, QPoint(4, 20));
    const auto move = [this](int column, Qt::KeyboardModifiers modifiers) {
        sendMouse(&plot, QEvent::MouseMove, {column + 1, 20}, Qt::LeftButton, modifiers);
    };
    move(22, Qt::ShiftModifier);
    EXPECT_EQ(chosenIndex(), 2) << "Shift means nothing to a drag";
    press(3);
    move(22, Qt::ControlModifier);
    EXPECT_EQ(chosenIndex(), 1);
}

TEST_F(PlotTest, KeysStepThroughRecords)
{
    press(3);
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        int index;
    } cases[] = {
        {Qt::Key_Right, Qt::NoModifier, 1},    {Qt::Key_Down, Qt::ControlModifier, 3},
        {Qt::Key_Up, Qt::NoModifier, 2},       {Qt::Key_Left, Qt::ControlModifier, -1},
        {Qt::Key_PageDown, Qt::NoModifier, 4}, {Qt::Key_PageUp, Qt::NoModifier, 2},
    };
    for (const auto &c : cases) {
        chosen.reset();
        QTest::keyClick(&plot, Qt::Key(c.key), c.modifiers);
        EXPECT_EQ(chosenIndex(), c.index) << "key " << c.key;
    }
    plot.setCurrentRecord(store.at(38));
    plot.setTimeScale({testStart, 100 * ticksPerSecond, 0});
    QTest::keyClick(&plot, Qt::Key_PageDown);
    EXPECT_EQ(chosenIndex(), 39) << "beyond the end";
    QTest::keyClick(&plot, Qt::Key_PageUp);
    EXPECT_EQ(chosenIndex(), 0);
    const int before = choices;
    QTest::keyClick(&plot, Qt::Key_Left);
    EXPECT_EQ(choices, before) << "nothing before the first";
    QTest::keyClick(&plot, Qt::Key_Escape);
    EXPECT_FALSE(chosen);
}

TEST_F(PlotTest, DragsAndWheelAskTheAxis)
{
    QSignalSpy pans(&plot, &Tsb::Plot::requestPan), zooms(&plot, &Tsb::Plot::requestZoom);
    QSignalSpy scrolling(&plot, &Tsb::Plot::requestDisableAutoscroll);
    dragMouse(&plot, {101, 20}, {{131, 40}}, Qt::MiddleButton);
    ASSERT_GE(pans.count(), 1);
    EXPECT_EQ(pans.last()[0].value<TimeScale>(), plot.timeScale().rebased(100));
    EXPECT_EQ(pans.last()[1].toPoint(), QPoint(30, 0));
    ASSERT_EQ(scrolling.count(), 2);
    EXPECT_TRUE(scrolling[0][0].toBool());
    EXPECT_FALSE(scrolling[1][0].toBool());
    EXPECT_EQ(choices, 0);
    plot.setMouseTracking(true); // as views do
    sendMouse(&plot, QEvent::MouseButtonPress, {101, 20}, Qt::MiddleButton);
    const int before = pans.count();
    sendMouse(&plot, QEvent::MouseMove, {131, 20}, Qt::NoButton); // the release went to a dialog
    EXPECT_EQ(pans.count(), before);
    EXPECT_FALSE(scrolling.last()[0].toBool());
    turnWheel(&plot, {61, 20}, {0, -120});
    ASSERT_EQ(zooms.count(), 1);
    EXPECT_DOUBLE_EQ(zooms[0][0].toDouble(), 1 / 0.9);
    EXPECT_EQ(zooms[0][1].toInt(), 60);
}

TEST_F(PlotTest, AContextMenuTakesTheCursorsWhichTellOfChangesAlone)
{
    QSignalSpy times(&plot, &Tsb::Plot::timeCursorChanged), values(&plot, &Tsb::Plot::valueCursorChanged);
    plot.setTimeCursor(false, 9);
    plot.setTimeCursor(true, 10);
    plot.setTimeCursor(true, 10);
    plot.setTimeCursor(true, 11);
    plot.setValueCursor(true, 20);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(10, 20));
    QApplication::sendEvent(&plot, &menu);
    plot.setTimeCursor(false, 5);
    ASSERT_EQ(times.count(), 3);
    EXPECT_FALSE(times.last()[0].toBool());
    EXPECT_FALSE(values.last()[0].toBool());
}

TEST_F(PlotTest, FocusShowsWhereItCameByAKey)
{
    QApplication::setActiveWindow(&plot);
    plot.setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(plot.hasFocus());
    const QImage clicked = picture();
    plot.clearFocus();
    plot.setFocus(Qt::TabFocusReason);
    const QImage reached = picture();
    EXPECT_NE(reached, clicked);
    const QRect contents = plot.contentsRect();
    EXPECT_EQ(reached.copy(contents), clicked.copy(contents));
    plot.clearFocus();
    EXPECT_EQ(picture(), clicked);
}

TEST_F(PlotTest, OutlivesItsStore)
{
    {
        Datastore mortal;
        mortal.addFullRecord(testRecord(0, 6, 0));
        plot.setDatastore(&mortal);
        plot.grab();
        plot.setCurrentRecord(mortal.at(0));
    }
    plot.grab();
    press(3);
    for (const auto key : {Qt::Key_Right, Qt::Key_PageDown, Qt::Key_Escape})
        QTest::keyClick(&plot, key);
    EXPECT_EQ(choices, 0);
}

using RecordPicking = Seeded<>;
INSTANTIATE_TEST_SUITE_P(Seeds, RecordPicking, ::testing::ValuesIn(seeds(3)));

TEST_P(RecordPicking, AgreesWithAWalkFromTheEnds)
{
    Datastore store;
    for (int i = 0; i < 60; ++i) {
        const int begin = pick(0, 400);
        store.addFullRecord(testRecord(begin, begin + pick(0, 30), pick(0, 2)));
    }
    for (int time = -5; time < 450; ++time) {
        const RecordTime tick = testStart + Ticks(time * ticksPerSecond);
        std::shared_ptr<Record> before, after;
        for (const auto &record : store.records()) {
            if (record->endTime < tick && record->beginTime < tick)
                before = record;
            if (!after && record->beginTime >= tick)
                after = record;
        }
        EXPECT_EQ(Tsb::findRecord(store, tick, -1), before);
        EXPECT_EQ(Tsb::findRecord(store, tick, 1), after);
    }
}

} // namespace
