#include "gui/browser/controls/gototimedialog.h"
#include "gui/browser/controls/timeview.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t second = ticksPerSecond;
const RecordTime start = recordTimeFromTicks(18'000 * ticksPerDay);
constexpr int settled = 450; // ms, beyond the pause that ends a gesture of steps

class ViewHistoryTest : public ::testing::Test {
protected:
    ViewHistoryTest()
    {
        view.resize(802, view.sizeHint().height());
        view.setTimeScale(home);
    }
    void wheel(int delta)
    {
        QWheelEvent event(QPointF(400, 5), QPointF(400, 5), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }
    void drag(int by, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&view, button, {}, {300, view.height() / 2});
        for (int step = 1; step <= 5; ++step) {
            QMouseEvent move(QEvent::MouseMove, QPointF(300 + by * step / 5, view.height() / 2.0), Qt::NoButton, button,
                             Qt::NoModifier);
            QApplication::sendEvent(&view, &move);
        }
        QTest::mouseRelease(&view, button, {}, {300 + by, view.height() / 2});
    }
    /// Goes back until there is no further place.
    int wayBack()
    {
        int steps = 0;
        for (; view.hasPreviousView() && steps < 1000; ++steps)
            view.goToPreviousView();
        return steps;
    }

    const TimeScale home{start, second, 0};
    Tsb::TimeView view;
};

TEST_F(ViewHistoryTest, OneEntryForEachFinishedGesture)
{
    QSignalSpy told(&view, &Tsb::TimeView::hasPreviousViewChanged);
    drag(100);
    const TimeScale dragged = view.timeScale();
    for (int i = 0; i < 6; ++i)
        wheel(120);
    QTest::qWait(settled);
    const TimeScale zoomed = view.timeScale();
    for (int i = 0; i < 3; ++i)
        wheel(-120);
    const TimeScale unsettled = view.timeScale();
    drag(-70);
    view.fitIntoView(start, start + Ticks(1000 * second));
    const TimeScale fitted = view.timeScale();
    view.goToTime(start + Ticks(5000 * second));
    EXPECT_EQ(view.timeScale().ticksPerPixel, fitted.ticksPerPixel);
    EXPECT_EQ(view.timeScale().tickAt(400), start + Ticks(5000 * second));
    EXPECT_EQ(told.count(), 1);

    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), fitted);
    view.goToPreviousView();
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), unsettled) << "the drag ended the steps of the wheel";
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), zoomed);
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), dragged);
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), home);
    EXPECT_FALSE(view.hasPreviousView());
    EXPECT_EQ(told.count(), 2);
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), home);
}

TEST_F(ViewHistoryTest, GoingBackDoesNotWaitForThePause)
{
    wheel(120);
    wheel(120);
    EXPECT_TRUE(view.hasPreviousView());
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), home);
    QTest::qWait(settled);
    EXPECT_FALSE(view.hasPreviousView()) << "going back is no gesture";
}

TEST_F(ViewHistoryTest, WhatIsNoGestureLeavesNothing)
{
    drag(0);
    wheel(120);
    view.changeZoom(1 / 0.9, 399);
    view.setTimeScale(home);
    QTest::qWait(settled);
    view.scrollIntoView(start + Ticks(50 * second), start + Ticks(51 * second)); // in sight
    view.runIntoView(start + Ticks(5000 * second), start + Ticks(5001 * second));
    view.refitIntoView(start, start + Ticks(900 * second));
    view.goToTime({});
    view.fitIntoView({}, start);
    EXPECT_FALSE(view.hasPreviousView());
    drag(100);
    view.forgetViews();
    EXPECT_FALSE(view.hasPreviousView());
}

TEST_F(ViewHistoryTest, JumpsInQuickSuccessionAreOneGesture)
{
    const auto jump = [this](int to) { view.scrollIntoView(start + Ticks(to * second), start + Ticks(to * second)); };
    wheel(120);
    const TimeScale zoomed = view.timeScale();
    QSignalSpy told(&view, &Tsb::TimeView::hasPreviousViewChanged);
    jump(5000);
    jump(5010);
    for (int i = 0; i < 3; ++i) { // together longer than the pause that ends it
        QTest::qWait(250);
        jump(5010); // in sight by now
    }
    jump(5020);
    const TimeScale jumped = view.timeScale();
    EXPECT_NE(jumped, zoomed);
    QTest::qWait(800);
    jump(-5000);
    wheel(-120);
    view.goToPreviousView();
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), jumped);
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale(), zoomed) << "the jump ended the steps of the wheel";
    EXPECT_EQ(told.count(), 0);
    EXPECT_EQ(wayBack(), 1);
    EXPECT_EQ(view.timeScale(), home);
}

TEST_F(ViewHistoryTest, KeepsFifty)
{
    for (int i = 1; i <= 60; ++i)
        view.goToTime(start + Ticks(i * 1000 * second));
    EXPECT_EQ(wayBack(), 50);
    EXPECT_EQ(view.timeScale().tickAt(400), start + Ticks(10 * 1000 * second)) << "the oldest are gone";
}

TEST_F(ViewHistoryTest, ADragOfAPlotEndsWhenItSaysSo)
{
    const TimeScale pressed = view.timeScale().rebased(200);
    for (int x = 1; x <= 40; ++x)
        view.changeZoom(pressed, QPoint(x, 0));
    view.goToPreviousView();
    EXPECT_EQ(view.timeScale().pixelAt(start), 40) << "not under the hand that drags";
    view.finishDrag();
    view.finishDrag();
    EXPECT_EQ(wayBack(), 1);
    EXPECT_EQ(view.timeScale(), home);
}

TEST_F(ViewHistoryTest, FollowingFillsNothing)
{
    Tsb::TimeView::Surroundings surroundings;
    RecordTime now = start + Ticks(100 * second);
    surroundings.now = [&now] { return now; };
    surroundings.screenAt = [](QPoint) { return QRect(0, 0, 2000, 1000); };
    view.setSurroundings(surroundings);
    view.setFollowNow(true);
    for (int i = 0; i < 4; ++i) {
        const TimeScale before = view.timeScale();
        now += Ticks(50 * second);
        QTRY_VERIFY_WITH_TIMEOUT(view.timeScale() != before, 5000);
    }
    wheel(-120);
    QTest::qWait(settled);
    const std::int64_t zoomed = view.timeScale().ticksPerPixel;
    EXPECT_NE(zoomed, second);
    view.goToPreviousView();
    EXPECT_TRUE(view.isFollowingNow()) << "a zoom of the running axis";
    EXPECT_EQ(view.timeScale().ticksPerPixel, second);
    view.goToPreviousView();
    EXPECT_FALSE(view.isFollowingNow());
    EXPECT_EQ(view.timeScale(), home) << "where the axis began to run";
    EXPECT_FALSE(view.hasPreviousView());
}

TEST_F(ViewHistoryTest, TheDialogGoesToWhatIsTyped)
{
    view.setTimeOffset(7200);
    Tsb::GoToTimeDialog dialog(&view);
    dialog.show();
    auto *const edit = dialog.findChild<QLineEdit *>();
    EXPECT_TRUE(edit->hasSelectedText()) << "typing takes the place of what is offered";
    EXPECT_EQ(edit->text(), QStringLiteral("2019-04-14 02:06:40"));

    QTest::keyClicks(edit, QStringLiteral("14.4.<b>2019"));
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(view.timeScale(), home);
    bool said = false;
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        said =
            said || (label->text().contains(QStringLiteral("“14.4.<b>2019”")) && label->textFormat() == Qt::PlainText);
    EXPECT_TRUE(said);

    QTest::keyClicks(edit, QStringLiteral("2019-04-15"));
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(view.timeScale().tickAt(400), start + Ticks(ticksPerDay - 7200 * second))
        << "midnight where it was measured";
    EXPECT_EQ(view.timeScale().ticksPerPixel, second);
}

} // namespace
