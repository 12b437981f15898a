#include "gui/browser/controls/cursorwrap.h"
#include "gui/browser/controls/timeview.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t second = ticksPerSecond;
const RecordTime start = recordTimeFromTicks(18'000 * ticksPerDay);

/// A time view of 800 columns of contents with a clock, a pointer and a screen of the test's own.
class TimeViewTest : public ::testing::Test {
protected:
    TimeViewTest()
    {
        surroundings.now = [this] { return now; };
        Tsb::setCursorAccess({[this](const QPoint &to) {
                                  if (pointerMoves)
                                      pointer = to;
                              },
                              [this] { return pointer; }});
        surroundings.screenAt = [](QPoint) { return QRect(0, 0, 2000, 1000); };
        view.setSurroundings(surroundings);
        view.resize(802, view.sizeHint().height());
        view.setTimeScale({start, second, 0});
    }

    ~TimeViewTest() override { Tsb::setCursorAccess({}); }

    void mouse(QEvent::Type type, Qt::MouseButton button, QPoint position)
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        pointer = QPoint(1000, 500) + position - QPoint(400, 0);
        QMouseEvent event(type, position, pointer, type == QEvent::MouseMove ? Qt::NoButton : button, held,
                          Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    }
    void drag(Qt::MouseButton button, QPoint from, QPoint by)
    {
        mouse(QEvent::MouseButtonPress, button, from);
        mouse(QEvent::MouseMove, button, from + by);
        mouse(QEvent::MouseButtonRelease, button, from + by);
    }
    void wheel(QPoint position, QPoint delta)
    {
        QWheelEvent event(position, position, QPoint(), delta, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
        EXPECT_TRUE(event.isAccepted());
    }
    int middle() const { return view.height() / 2; }

    RecordTime now = start;
    QPoint pointer;
    bool pointerMoves = true;
    Tsb::TimeView::Surroundings surroundings;
    Tsb::TimeView view;
};

TEST_F(TimeViewTest, RefusesScalesOutOfRange)
{
    const TimeScale before = view.timeScale();
    QSignalSpy spy(&view, &Tsb::TimeView::timeScaleChanged);
    view.setTimeScale(before);
    view.setTimeScale({latestRecordTime, second, 0});
    view.setTimeScale({start, TimeScale::greatestTicksPerPixel, std::int64_t(1) << 40});
    EXPECT_EQ(view.timeScale(), before);
    EXPECT_EQ(spy.count(), 0);
    view.setTimeScale({start, -5, 0});
    EXPECT_EQ(view.timeScale().ticksPerPixel, 1);
    view.setTimeScale({start, std::int64_t(1) << 60, 0});
    EXPECT_EQ(view.timeScale().ticksPerPixel, TimeScale::greatestTicksPerPixel);
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(TimeViewTest, WheelZoomsAboutThePointer)
{
    const RecordTime under = view.timeScale().tickAt(400);
    wheel({401, 5}, {0, 120});
    EXPECT_EQ(view.timeScale().ticksPerPixel, 9'000'000);
    EXPECT_EQ(view.timeScale().tickAt(400), under);
    const TimeScale before = view.timeScale();
    wheel({401, 5}, {120, 0});
    EXPECT_EQ(view.timeScale(), before) << "a sideways wheel changes nothing";
    wheel({401, 5}, {0, -8});
    EXPECT_NEAR(double(view.timeScale().ticksPerPixel), 9e6 * std::pow(0.9, -8 / 120.0), 1.0);
}

TEST_F(TimeViewTest, TheFinestScaleCanBeLeft)
{
    view.fitIntoView(start, start);
    EXPECT_EQ(view.timeScale().ticksPerPixel, 1);
    for (std::int64_t expected = 2; expected < 10; ++expected) {
        view.changeZoom(1 / 0.9, 100);
        EXPECT_EQ(view.timeScale().ticksPerPixel, expected);
    }
}

TEST_F(TimeViewTest, DragPansAndZoomsBeyondTheDeadBand)
{
    view.setTimeScale({start, 12'345'677, 0});
    drag(Qt::LeftButton, {300, middle()}, {50, 3});
    EXPECT_EQ(view.timeScale().ticksPerPixel, 12'345'677) << "not a tick is lost";
    EXPECT_EQ(view.timeScale().pixelAt(start), 50);
    drag(Qt::LeftButton, {300, middle()}, {0, middle() + 10});
    EXPECT_NEAR(double(view.timeScale().ticksPerPixel), 12'345'677 * std::pow(0.99, 10), 1.0);
    const auto zoomed = view.timeScale().ticksPerPixel;
    drag(Qt::RightButton, {300, middle()}, {70, 0});
    EXPECT_EQ(view.timeScale().ticksPerPixel, zoomed);
    EXPECT_EQ(view.cursor().shape(), Qt::OpenHandCursor);
}

TEST_F(TimeViewTest, PanGoesOnOverTheScreensEdge)
{
    // The pointer of this fixture stands at x + 600 on a screen of 2000.
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, {400, middle()});
    mouse(QEvent::MouseMove, Qt::LeftButton, {1397, middle()});
    EXPECT_EQ(view.timeScale().pixelAt(start), 997);
    EXPECT_EQ(pointer.x(), 7);
    mouse(QEvent::MouseMove, Qt::LeftButton, {1398, middle()});
    EXPECT_EQ(view.timeScale().pixelAt(start), 997) << "an event from before the step counts for nothing";
    mouse(QEvent::MouseMove, Qt::LeftButton, {-593 + 20, middle()});
    EXPECT_EQ(view.timeScale().pixelAt(start), 997 + 20);
}

TEST_F(TimeViewTest, PanWhereThePointerCannotBeMoved)
{
    pointerMoves = false;
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, {400, middle()});
    for (const int x : {1397, 1399, 1398, 1300})
        mouse(QEvent::MouseMove, Qt::LeftButton, {x, middle()});
    EXPECT_EQ(view.timeScale().pixelAt(start), 900) << "the drag follows the pointer back";
}

TEST_F(TimeViewTest, MiddleButtonRolls)
{
    const TimeScale before = view.timeScale();
    mouse(QEvent::MouseButtonPress, Qt::MiddleButton, {400, middle()});
    QTest::qWait(50);
    mouse(QEvent::MouseButtonRelease, Qt::MiddleButton, {400, middle()});
    EXPECT_EQ(view.timeScale(), before) << "held and released at once";
    mouse(QEvent::MouseButtonPress, Qt::MiddleButton, {400, middle()});
    mouse(QEvent::MouseMove, Qt::MiddleButton, {700, middle()});
    QTRY_VERIFY_WITH_TIMEOUT(view.timeScale().pixelAt(start) < -300, 5000);
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton, {700, middle()});
    EXPECT_EQ(view.cursor().shape(), Qt::SizeHorCursor) << "the other button doesn't end it";
    mouse(QEvent::MouseButtonRelease, Qt::MiddleButton, {700, middle()});
    EXPECT_EQ(view.timeScale().ticksPerPixel, second);
}

TEST_F(TimeViewTest, StopsMovingWhenTheReleaseCannotCome)
{
    view.show();
    for (const bool hidden : {true, false}) {
        mouse(QEvent::MouseButtonPress, Qt::MiddleButton, {400, middle()});
        mouse(QEvent::MouseMove, Qt::MiddleButton, {700, middle()});
        hidden ? view.hide() : view.setEnabled(false);
        const TimeScale stopped = view.timeScale();
        QTest::qWait(70);
        EXPECT_EQ(view.timeScale(), stopped);
        hidden ? view.show() : view.setEnabled(true);
        drag(Qt::LeftButton, {400, middle()}, {10, 0});
        EXPECT_EQ(view.timeScale().tickAt(10), stopped.tickAt(0));
    }
}

TEST_F(TimeViewTest, ScrollIntoViewMovesAsLittleAsPossible)
{
    const auto moment = [](std::int64_t pixel) { return start + Ticks(pixel * second); };
    const struct {
        std::int64_t begin, end, origin;
    } cases[] = {{100, 200, 0}, {780, 800, -10}, {-50, -20, 60}, {5, 8, 5}, {-500, 2000, -350}, {-501, 2000, -349}};
    for (const auto &c : cases) {
        view.setTimeScale({start, second, 0});
        view.scrollIntoView(moment(c.begin), moment(c.end));
        EXPECT_EQ(view.timeScale().originPixel, c.origin) << c.begin;
    }
    view.setTimeScale({start, 1, 0});
    view.scrollIntoView(start + Ticks(30 * ticksPerDay), start + Ticks(30 * ticksPerDay + 5));
    EXPECT_EQ(view.timeScale().columnOf(start + Ticks(30 * ticksPerDay + 5)), 790) << "a month away, at a tick a pixel";
    view.scrollIntoView(RecordTime(), start);
    EXPECT_EQ(view.timeScale().columnOf(start + Ticks(30 * ticksPerDay + 5)), 790);
}

TEST_F(TimeViewTest, FitLeavesTenPixelsOnEachSide)
{
    view.fitIntoView(start, start + Ticks(780 * 60 * second));
    EXPECT_EQ(view.timeScale(), TimeScale(start, 60 * second, 10));
}

TEST_F(TimeViewTest, FollowsNowInWholePixels)
{
    QSignalSpy following(&view, &Tsb::TimeView::followNowChanged);
    now = start + Ticks(100 * second + 3);
    view.setFollowNow(true);
    view.setFollowNow(true);
    EXPECT_EQ(following.count(), 1);
    EXPECT_EQ(view.timeScale(), TimeScale(start + Ticks(100 * second), second, 790));
    now = start + Ticks(105 * second + 9'999'999);
    QTRY_COMPARE_WITH_TIMEOUT(view.timeScale().originTick, start + Ticks(105 * second), 5000);
    drag(Qt::LeftButton, {300, middle()}, {245, 0});
    EXPECT_EQ(view.timeScale().originPixel, 790) << "a drag stretches and doesn't pan";
    EXPECT_EQ(view.timeScale().ticksPerPixel, second * 491 / 246);
    view.resize(402, view.height());
    QApplication::processEvents();
    view.scrollIntoView(start, start + Ticks(1));
    EXPECT_FALSE(view.isFollowingNow()) << "what has to move stops following";
    EXPECT_EQ(Tsb::followInterval(1), 100);
    EXPECT_EQ(Tsb::followInterval(5 * second / 10), 500);
    EXPECT_EQ(Tsb::followInterval(TimeScale::greatestTicksPerPixel), 1000);
}

TEST_F(TimeViewTest, ShowsAxisAndCursor)
{
    const QImage plain = view.grab().toImage();
    view.setTimeCursor(true, 400);
    const QImage cursor = view.grab().toImage();
    EXPECT_NE(plain.copy(350, 2, 100, 20), cursor.copy(350, 2, 100, 20));
    EXPECT_EQ(plain.copy(0, 0, 250, plain.height()), cursor.copy(0, 0, 250, cursor.height()));
    view.setTimeCursor(false, 0);
    EXPECT_EQ(view.grab().toImage(), plain);
    view.setTimeOffset(3600);
    EXPECT_NE(view.grab().toImage(), plain);
    EXPECT_TRUE(view.toolTip().contains(QStringLiteral("+01:00")));
}

} // namespace
