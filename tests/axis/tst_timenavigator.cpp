#include "axis/timenavigator.h"
#include "axis/zoomfactor.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t second = ticksPerSecond;
const RecordTime start = recordTimeFromTicks(18'000 * ticksPerDay);
constexpr int settled = 450; // ms, beyond the pause that ends a gesture of steps

RecordTime moment(std::int64_t seconds)
{
    return start + Ticks(seconds * second);
}

/// A window of 800 columns, a second each, with a clock of the test's own.
class TimeNavigatorTest : public ::testing::Test {
protected:
    TimeNavigatorTest()
    {
        axis.setTimeScale(home);
        QObject::connect(&axis, &Tsb::TimeNavigator::timeScaleChanged, [this] { ++changes; });
        QObject::connect(&axis, &Tsb::TimeNavigator::followNowChanged, [this] { ++followChanges; });
        QObject::connect(&axis, &Tsb::TimeNavigator::hasPreviousViewChanged, [this] { ++told; });
    }
    /// Handles events until the condition holds, or that many milliseconds.
    template<typename Condition>
    static bool waitFor(Condition condition, int most = 5000)
    {
        QElapsedTimer timer;
        for (timer.start(); !condition() && timer.elapsed() < most; QThread::msleep(1))
            QCoreApplication::processEvents();
        return condition();
    }
    static void wait(int ms)
    {
        waitFor([] { return false; }, ms);
    }
    void wheel(int delta) { axis.changeZoom(Tsb::zoomOfWheel(delta), 399); }
    void drag(int by)
    {
        axis.beginPan(299);
        for (int step = 1; step <= 5; ++step)
            axis.pan({by * step / 5, 3}, 15);
        axis.endDrag();
    }
    /// Goes back until there is no further place.
    int wayBack()
    {
        int steps = 0;
        for (; axis.hasPreviousView() && steps < 1000; ++steps)
            axis.goToPreviousView();
        return steps;
    }

    const TimeScale home{start, second, 0};
    RecordTime now = start;
    int width = 800;
    int changes = 0, followChanges = 0, told = 0;
    Tsb::TimeNavigator axis{[this] { return now; }, [this] { return width; }};
};

TEST_F(TimeNavigatorTest, RefusesScalesOutOfRange)
{
    axis.setTimeScale(home);
    axis.setTimeScale({latestRecordTime, second, 0});
    axis.setTimeScale({start, TimeScale::greatestTicksPerPixel, std::int64_t(1) << 40});
    EXPECT_EQ(axis.timeScale(), home);
    EXPECT_EQ(changes, 0);
    axis.setTimeScale({start, -5, 0});
    EXPECT_EQ(axis.timeScale().ticksPerPixel, 1);
    axis.setTimeScale({start, std::int64_t(1) << 60, 0});
    EXPECT_EQ(axis.timeScale().ticksPerPixel, TimeScale::greatestTicksPerPixel);
    EXPECT_EQ(changes, 2);
}

TEST_F(TimeNavigatorTest, TheFinestScaleCanBeLeft)
{
    axis.fitIntoView(start, start);
    EXPECT_EQ(axis.timeScale().ticksPerPixel, 1);
    for (std::int64_t expected = 2; expected < 10; ++expected) {
        axis.changeZoom(1 / 0.9, 100);
        EXPECT_EQ(axis.timeScale().ticksPerPixel, expected);
    }
}

TEST_F(TimeNavigatorTest, ScrollIntoViewMovesAsLittleAsPossible)
{
    const struct {
        std::int64_t begin, end, origin;
    } cases[] = {{100, 200, 0}, {780, 800, -10}, {-50, -20, 60}, {5, 8, 5}, {-500, 2000, -350}, {-501, 2000, -349}};
    for (const auto &c : cases) {
        axis.setTimeScale(home);
        axis.scrollIntoView(moment(c.begin), moment(c.end));
        EXPECT_EQ(axis.timeScale().originPixel, c.origin) << c.begin;
    }
    const RecordTime far = start + Ticks(30 * ticksPerDay);
    axis.setTimeScale({start, 1, 0});
    axis.scrollIntoView(far - Ticks(5), far);
    EXPECT_EQ(axis.timeScale().columnOf(far), 790) << "a month away, at a tick a pixel";
    axis.scrollIntoView(RecordTime(), start);
    axis.beginPan(5);
    axis.scrollIntoView(start, start);
    EXPECT_EQ(axis.timeScale().columnOf(far), 790) << "no time, or a drag";
}

TEST_F(TimeNavigatorTest, FitLeavesTenPixelsOnEachSide)
{
    axis.fitIntoView(start, start + Ticks(780 * 60 * second));
    EXPECT_EQ(axis.timeScale(), TimeScale(start, 60 * second, 10));
}

TEST_F(TimeNavigatorTest, TheWholeStaysInSightAtEachWidthUntilTheScaleIsChanged)
{
    const auto widen = [this](int to) {
        width = to;
        axis.adaptToWidth();
        return axis.timeScale().ticksPerPixel / second;
    };
    axis.fitWhole(start, moment(7800));
    EXPECT_EQ(axis.timeScale(), TimeScale(start, 10 * second, 10));
    EXPECT_EQ(widen(1580), 5);
    EXPECT_EQ(widen(800), 10);
    wheel(120);
    EXPECT_FALSE(axis.isWhole());
    EXPECT_EQ(widen(1580), 9) << "the user's zoom stays";
    axis.goToPreviousView();
    EXPECT_EQ(widen(410), 20) << "the way back leads to the whole";
    axis.fitIntoView(start, moment(390));
    EXPECT_EQ(widen(800), 1) << "a part of it is no whole";
}

TEST_F(TimeNavigatorTest, FollowsNowInWholePixels)
{
    now = start + Ticks(100 * second + 3);
    axis.setFollowNow(true);
    axis.setFollowNow(true);
    EXPECT_EQ(followChanges, 1);
    EXPECT_EQ(axis.timeScale(), TimeScale(moment(100), second, 790));
    now = start + Ticks(105 * second + 9'999'999);
    EXPECT_TRUE(waitFor([this] { return axis.timeScale().originTick == moment(105); }));
    drag(245);
    EXPECT_EQ(axis.timeScale().originPixel, 790) << "a drag stretches and doesn't pan";
    EXPECT_EQ(axis.timeScale().ticksPerPixel, second * 491 / 246);
    width = 400;
    axis.adaptToWidth();
    EXPECT_EQ(axis.timeScale().originPixel, 390);
    axis.scrollIntoView(moment(-5000), moment(-4999));
    EXPECT_FALSE(axis.isFollowingNow()) << "what has to move stops following";
    EXPECT_EQ(Tsb::followInterval(1), 100);
    EXPECT_EQ(Tsb::followInterval(5 * second / 10), 500);
    EXPECT_EQ(Tsb::followInterval(TimeScale::greatestTicksPerPixel), 1000);
}

TEST_F(TimeNavigatorTest, OneEntryForEachFinishedGesture)
{
    drag(100);
    const TimeScale dragged = axis.timeScale();
    for (int i = 0; i < 6; ++i)
        wheel(120);
    wait(settled);
    const TimeScale zoomed = axis.timeScale();
    for (int i = 0; i < 3; ++i)
        wheel(-120);
    const TimeScale unsettled = axis.timeScale();
    drag(-70);
    axis.fitIntoView(start, moment(1000));
    const TimeScale fitted = axis.timeScale();
    axis.goToTime(moment(5000));
    EXPECT_EQ(axis.timeScale().ticksPerPixel, fitted.ticksPerPixel);
    EXPECT_EQ(axis.timeScale().tickAt(400), moment(5000));
    EXPECT_EQ(told, 1);

    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), fitted);
    axis.goToPreviousView();
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), unsettled) << "the drag ended the steps of the wheel";
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), zoomed);
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), dragged);
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), home);
    EXPECT_FALSE(axis.hasPreviousView());
    EXPECT_EQ(told, 2);
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), home);
}

TEST_F(TimeNavigatorTest, GoingBackDoesNotWaitForThePause)
{
    wheel(120);
    wheel(120);
    EXPECT_TRUE(axis.hasPreviousView());
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), home);
    wait(settled);
    EXPECT_FALSE(axis.hasPreviousView()) << "going back is no gesture";
}

TEST_F(TimeNavigatorTest, WhatIsNoGestureLeavesNothing)
{
    drag(0);
    wheel(120);
    axis.changeZoom(1 / 0.9, 399);
    axis.setTimeScale(home);
    wait(settled);
    axis.scrollIntoView(moment(50), moment(51)); // in sight
    axis.runIntoView(moment(5000), moment(5001));
    axis.goToTime({});
    axis.fitIntoView({}, start);
    EXPECT_FALSE(axis.hasPreviousView());
    drag(100);
    axis.forgetViews();
    EXPECT_FALSE(axis.hasPreviousView());
}

TEST_F(TimeNavigatorTest, JumpsInQuickSuccessionAreOneGesture)
{
    const auto jump = [this](int to) { axis.scrollIntoView(moment(to), moment(to)); };
    wheel(120);
    const TimeScale zoomed = axis.timeScale();
    told = 0;
    jump(5000);
    jump(5010);
    for (int i = 0; i < 3; ++i) { // together longer than the pause that ends it
        wait(250);
        jump(5010); // in sight by now
    }
    jump(5020);
    const TimeScale jumped = axis.timeScale();
    EXPECT_NE(jumped, zoomed);
    wait(800);
    jump(-5000);
    wheel(-120);
    axis.goToPreviousView();
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), jumped);
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale(), zoomed) << "the jump ended the steps of the wheel";
    EXPECT_EQ(told, 0);
    EXPECT_EQ(wayBack(), 1);
    EXPECT_EQ(axis.timeScale(), home);
}

TEST_F(TimeNavigatorTest, KeepsFifty)
{
    for (int i = 1; i <= 60; ++i)
        axis.goToTime(moment(i * 1000));
    EXPECT_EQ(wayBack(), 50);
    EXPECT_EQ(axis.timeScale().tickAt(400), moment(10 * 1000)) << "the oldest are gone";
}

TEST_F(TimeNavigatorTest, ADragOfAPlotEndsWhenItSaysSo)
{
    const TimeScale pressed = axis.timeScale().rebased(200);
    for (int x = 1; x <= 40; ++x)
        axis.changeZoom(pressed, QPoint(x, 0));
    axis.goToPreviousView();
    EXPECT_EQ(axis.timeScale().pixelAt(start), 40) << "not under the hand that drags";
    axis.finishDrag();
    axis.finishDrag();
    EXPECT_EQ(wayBack(), 1);
    EXPECT_EQ(axis.timeScale(), home);
}

TEST_F(TimeNavigatorTest, FollowingFillsNothing)
{
    const TimeScale fine{start, second / 10, 0}; // followed every 100 ms
    axis.setTimeScale(fine);
    now = moment(100);
    axis.setFollowNow(true);
    for (int i = 0; i < 4; ++i) {
        const TimeScale before = axis.timeScale();
        now += Ticks(50 * second);
        EXPECT_TRUE(waitFor([&] { return axis.timeScale() != before; }));
    }
    wheel(-120);
    wait(settled);
    const std::int64_t zoomed = axis.timeScale().ticksPerPixel;
    EXPECT_NE(zoomed, fine.ticksPerPixel);
    axis.goToPreviousView();
    EXPECT_TRUE(axis.isFollowingNow()) << "a zoom of the running axis";
    EXPECT_EQ(axis.timeScale().ticksPerPixel, fine.ticksPerPixel);
    axis.goToPreviousView();
    EXPECT_FALSE(axis.isFollowingNow());
    EXPECT_EQ(axis.timeScale(), fine) << "where the axis began to run";
    EXPECT_FALSE(axis.hasPreviousView());
}

} // namespace
