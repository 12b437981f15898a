#include "gui/browser/controls/cursorwrap.h"
#include "gui/browser/controls/gototimedialog.h"
#include "gui/browser/controls/timeview.h"
#include "support/gestures.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

constexpr std::int64_t second = ticksPerSecond;
const RecordTime start = recordTimeFromTicks(18'000 * ticksPerDay);

/// A time view of 800 columns of contents with a clock, a pointer and a screen of the test's own.
class TimeViewTest : public ::testing::Test {
protected:
    TimeViewTest()
    {
        Tsb::setCursorAccess({[this](const QPoint &to) {
                                  if (pointerMoves)
                                      pointer = to;
                              },
                              [this] { return pointer; }});
        view.resize(802, view.sizeHint().height());
        view.setTimeScale({start, second, 0});
    }

    ~TimeViewTest() override { Tsb::setCursorAccess({}); }

    void mouse(QEvent::Type type, Qt::MouseButton button, QPoint position)
    {
        pointer = QPoint(1000, 500) + position - QPoint(400, 0);
        sendMouse(&view, type, position, button, {}, pointer);
    }
    void drag(Qt::MouseButton button, QPoint from, QPoint by)
    {
        mouse(QEvent::MouseButtonPress, button, from);
        mouse(QEvent::MouseMove, button, from + by);
        mouse(QEvent::MouseButtonRelease, button, from + by);
    }
    void wheel(QPoint position, QPoint delta) { EXPECT_TRUE(turnWheel(&view, position, delta)); }
    int middle() const { return view.height() / 2; }

    RecordTime now = start;
    QPoint pointer;
    bool pointerMoves = true;
    Tsb::TimeView view{nullptr, {[this] { return now; }, [](QPoint) { return QRect(0, 0, 2000, 1000); }}};
};

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

TEST_F(TimeViewTest, HandlesDragTheirCursorsAndAllElseTheAxis)
{
    Tsb::MeasuringCursors cursors;
    view.setMeasuringCursors(&cursors);
    cursors.set(0, start + Ticks(300 * second));
    cursors.set(1, start + Ticks(303 * second)); // upon the first
    const auto columnOf = [&](int which) { return view.timeScale().pixelAt(*cursors.times()[which]); };
    const TimeScale home = view.timeScale();
    const int handles = view.height() - 6;
    const QVector<QPair<QPoint, QPair<int, int>>> drags{
        {{304, handles}, {300, 403}}, {{299, handles}, {400, 403}}, {{404, handles}, {400, 503}}};
    for (const auto &[from, expected] : drags) {
        drag(Qt::LeftButton, from, {100, -5});
        EXPECT_EQ(QPair(columnOf(0), columnOf(1)), expected) << from.x();
    }
    drag(Qt::LeftButton, {501, handles}, {5000, 0});
    EXPECT_EQ(columnOf(1), 799) << "not out of sight";
    EXPECT_EQ(view.timeScale(), home);
    mouse(QEvent::MouseMove, Qt::NoButton, {401, handles});
    EXPECT_EQ(view.cursor().shape(), Qt::SizeHorCursor);
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, {401, handles});
    cursors.drop(); // by its key, in the middle of a drag
    mouse(QEvent::MouseMove, Qt::LeftButton, {420, handles});
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton, {420, handles});
    EXPECT_FALSE(cursors.areAny());
    EXPECT_EQ(view.timeScale(), home);
    cursors.set(0, start + Ticks(300 * second));
    drag(Qt::LeftButton, {301, 3}, {50, 0});
    EXPECT_EQ(view.timeScale().pixelAt(start), 50) << "above the handle";
    cursors.set(1, start - Ticks(ticksPerDay));
    drag(Qt::LeftButton, {1, handles}, {10, 0});
    EXPECT_EQ(view.timeScale().pixelAt(start), 60) << "a cursor out of sight has no handle";
}

TEST_F(TimeViewTest, ADragWithShiftMarksASpanAndLeavesTheAxis)
{
    std::vector<std::pair<RecordTime, RecordTime>> spans;
    QObject::connect(&view, &Tsb::TimeView::spanMarked,
                     [&](RecordTime begin, RecordTime end, const QPoint &) { spans.emplace_back(begin, end); });
    const TimeScale home = view.timeScale();
    const auto dragWithShift = [&](int from, int to) {
        sendMouse(&view, QEvent::MouseButtonPress, {from + 1, 5}, Qt::LeftButton, Qt::ShiftModifier);
        sendMouse(&view, QEvent::MouseMove, {to + 1, 5}, Qt::LeftButton); // the key may be let go meanwhile
        sendMouse(&view, QEvent::MouseButtonRelease, {to + 1, 5}, Qt::LeftButton);
    };
    dragWithShift(500, 200);
    dragWithShift(100, 102);
    dragWithShift(700, 9000);
    ASSERT_EQ(spans.size(), 2u) << "a click marks none";
    const auto at = [](int seconds) { return start + Ticks(seconds * second); };
    EXPECT_EQ(spans[0], std::pair(at(200), at(500)));
    EXPECT_EQ(spans[1], std::pair(at(700), at(799)));
    EXPECT_EQ(view.timeScale(), home);
    sendMouse(&view, QEvent::MouseButtonPress, {300, 5}, Qt::LeftButton, Qt::ShiftModifier);
    view.setEnabled(false);
    view.setEnabled(true);
    sendMouse(&view, QEvent::MouseButtonRelease, {400, 5}, Qt::LeftButton);
    EXPECT_EQ(spans.size(), 2u);
    drag(Qt::LeftButton, {300, middle()}, {50, 0});
    EXPECT_EQ(view.timeScale().pixelAt(start), 50);
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
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        mouse(QEvent::MouseButtonPress, button, {400, middle()});
        mouse(QEvent::MouseMove, button, {420, middle()});
        mouse(QEvent::MouseMove, Qt::NoButton, {500, middle()}); // a dialog has got it
        const TimeScale stopped = view.timeScale();
        mouse(QEvent::MouseMove, Qt::NoButton, {600, middle()});
        QTest::qWait(70);
        EXPECT_EQ(view.timeScale(), stopped);
    }
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

TEST_F(TimeViewTest, AResizeKeepsThePresentAtItsPlace)
{
    view.show();
    view.setFollowNow(true);
    view.resize(402, view.height());
    EXPECT_EQ(view.timeScale().pixelAt(now), 390);
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

TEST_F(TimeViewTest, TheDialogGoesToWhatIsTyped)
{
    const TimeScale home = view.timeScale();
    view.setTimeOffset(7200);
    Tsb::GoToTimeDialog dialog(view.navigator(), view.timeOffset());
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
