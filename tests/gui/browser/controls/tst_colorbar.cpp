#include "gui/browser/controls/colorbar.h"
#include "support/gestures.h"

#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// A bar whose contents are 200 pixels long, with limits 1 to 3.
class ColorbarTest : public ::testing::TestWithParam<Qt::Orientation> {
protected:
    void SetUp() override
    {
        bar.setColormap(Colormap::make(0));
        const int frame = 2 * bar.frameWidth();
        bar.resize(horizontal() ? QSize(200 + frame, 30 + frame) : QSize(30 + frame, 200 + frame));
        bar.show();
    }
    bool horizontal() const { return GetParam() == Qt::Horizontal; }
    /// The place p pixels from the bar's low end.
    QPoint at(int p) const
    {
        const QRect area = bar.contentsRect();
        return horizontal() ? QPoint(area.x() + p, area.center().y())
                            : QPoint(area.center().x(), area.y() + area.height() - p);
    }
    void mouse(QEvent::Type type, int p, Qt::MouseButton button = Qt::LeftButton)
    {
        sendMouse(&bar, type, at(p), button);
    }
    void drag(int from, int to) { dragMouse(&bar, at(from), {at(to)}); }
    void wheel(int p, const QPoint &delta) { EXPECT_TRUE(turnWheel(&bar, at(p), delta)); }
    double valueAt(int p) const { return bar.lower() + (bar.upper() - bar.lower()) * p / 200; }

    Colorbar bar{GetParam()};
};

TEST_P(ColorbarTest, ALostReleaseEndsADragToo)
{
    mouse(QEvent::MouseButtonPress, 150);
    mouse(QEvent::MouseMove, 100);
    const double upper = bar.upper();
    EXPECT_GT(upper, 3);
    mouse(QEvent::MouseMove, 180, Qt::NoButton);
    EXPECT_EQ(bar.upper(), upper);

    QSignalSpy marked(&bar, &Colorbar::mouseMarkedValue);
    QObject::connect(&bar, &Colorbar::mouseMarkedValue, &bar, &Colorbar::markValue);
    mouse(QEvent::MouseButtonPress, 150, Qt::RightButton);
    mouse(QEvent::MouseMove, 160, Qt::NoButton);
    mouse(QEvent::MouseMove, 170, Qt::NoButton);
    ASSERT_EQ(marked.size(), 2);
    EXPECT_TRUE(std::isnan(marked[1][0].toDouble()));
}

TEST_P(ColorbarTest, TakesOnlyUsableLimits)
{
    struct Case {
        double lower, upper;
        bool taken;
    };
    const Case cases[] = {{2, 2, true},    {-4, 16, true},   {1, 22, false},    {3, 1, false},     {nan, 2, false},
                          {1, nan, false}, {-inf, 3, false}, {inf, inf, false}, {1e17, 1e17, true}};
    for (const Case &c : cases) {
        bar.setLimits(1, 3);
        QSignalSpy changed(&bar, &Colorbar::limitsChanged);
        bar.setLimits(c.lower, c.upper);
        EXPECT_EQ(changed.size(), c.taken ? 1 : 0) << c.lower << " " << c.upper;
        EXPECT_EQ(bar.lower(), c.taken ? c.lower : 1);
        bar.setLimits(c.lower, c.upper);
        EXPECT_EQ(changed.size(), c.taken ? 1 : 0) << "no second signal for the same limits";
        bar.grab(); // paints whatever the limits are
    }
}

TEST_P(ColorbarTest, TheGrabbedValueFollowsTheMouse)
{
    const double right = valueAt(150);
    drag(150, 180);
    EXPECT_NEAR(valueAt(180), right, 1e-12);
    EXPECT_EQ(bar.lower(), 1);
    const double left = valueAt(40), upper = bar.upper();
    drag(40, 70);
    EXPECT_NEAR(valueAt(70), left, 1e-12);
    EXPECT_EQ(bar.upper(), upper);
}

TEST_P(ColorbarTest, DragsThatLeadNowhereChangeNothing)
{
    QSignalSpy changed(&bar, &Colorbar::limitsChanged);
    drag(100, 150); // the exact middle is neither half
    drag(150, 0);   // the distance that is left is 0
    drag(150, -10); // and below
    drag(150, 1);   // wider than 20 decades
    EXPECT_EQ(changed.size(), 0);
}

TEST_P(ColorbarTest, RightButtonMarksAValue)
{
    QSignalSpy marked(&bar, &Colorbar::mouseMarkedValue);
    mouse(QEvent::MouseButtonPress, 50, Qt::RightButton);
    mouse(QEvent::MouseMove, 100, Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, 100, Qt::RightButton);
    ASSERT_EQ(marked.size(), 3);
    EXPECT_DOUBLE_EQ(marked[0][0].toDouble(), 1.5);
    EXPECT_DOUBLE_EQ(marked[1][0].toDouble(), 2.0);
    EXPECT_TRUE(std::isnan(marked[2][0].toDouble()));
    QContextMenuEvent menu(QContextMenuEvent::Mouse, at(50));
    QApplication::sendEvent(&bar, &menu);
    EXPECT_TRUE(menu.isAccepted());
}

TEST_P(ColorbarTest, WheelMovesTheEndOnItsSide)
{
    wheel(150, {0, 120});
    EXPECT_DOUBLE_EQ(bar.upper(), 3.02);
    wheel(50, {0, -240});
    EXPECT_DOUBLE_EQ(bar.lower(), 0.96);
    wheel(50, {120, 0}); // sideways
    EXPECT_DOUBLE_EQ(bar.lower(), 0.96);
    bar.setLimits(2, 2);
    wheel(150, {0, 15});
    EXPECT_DOUBLE_EQ(bar.upper(), 2.0025) << "the wheel leads out of a zero span, in parts of a notch too";
}

TEST_P(ColorbarTest, CursorTellsWhereToGrab)
{
    const auto shapeAt = [this](int p) {
        mouse(QEvent::MouseMove, p, Qt::NoButton);
        return bar.cursor().shape();
    };
    EXPECT_EQ(shapeAt(29), Qt::OpenHandCursor);
    EXPECT_EQ(shapeAt(30), Qt::ArrowCursor);
    EXPECT_EQ(shapeAt(170), Qt::ArrowCursor);
    EXPECT_EQ(shapeAt(171), Qt::OpenHandCursor);
    mouse(QEvent::MouseButtonPress, 180);
    EXPECT_EQ(bar.cursor().shape(), Qt::ClosedHandCursor);
}

TEST_P(ColorbarTest, DoubleClickIsForTheLeftButton)
{
    QSignalSpy clicked(&bar, &Colorbar::doubleClicked);
    mouse(QEvent::MouseButtonDblClick, 50);
    mouse(QEvent::MouseButtonDblClick, 50, Qt::RightButton);
    EXPECT_EQ(clicked.size(), 1);
}

TEST_P(ColorbarTest, ColorsRunFromLowToHigh)
{
    bar.setColormap([](double v) { return 0xFF000000u | uint(std::lround(v * 200)); });
    bar.setLimits(2, 2); // no ticks
    const QImage picture = bar.grab().toImage();
    for (int p : {1, 50, 120, 199}) {
        const QPoint place = at(p) * picture.devicePixelRatio();
        EXPECT_EQ(picture.pixel(place), 0xFF000000u | uint(p)) << p;
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, ColorbarTest, ::testing::Values(Qt::Horizontal, Qt::Vertical));

/// Columns of the picture that hold a dark pixel where the map is light.
std::vector<int> darkColumns(const QImage &picture, int row)
{
    std::vector<int> columns;
    for (int x = 0; x < picture.width(); ++x)
        if (qGray(picture.pixel(x, row)) < 90)
            columns.push_back(x);
    return columns;
}

TEST(ColorbarPicture, TicksStandAtDecadesAndLabelsKeepApart)
{
    Colorbar bar(Qt::Horizontal);
    bar.setColormap([](double) { return 0xFFE0E0E0u; });
    bar.setFrameShape(QFrame::NoFrame);
    bar.resize(400, 30);
    bar.setLimits(0.5, 2.5); // decades 1 and 2 at 100 and 300
    const auto ticks = darkColumns(bar.grab().toImage(), 27);
    EXPECT_EQ(ticks.size(), 2u);
    for (int x : ticks)
        EXPECT_TRUE(std::abs(x - 99) <= 1 || std::abs(x - 299) <= 1) << x;

    // One that an edge would cut is moved inward, and without decades the ends tell their values.
    for (const auto &[lower, upper, left] : {std::make_tuple(1.0, 2.9, 0), std::make_tuple(0.1, 2.01, 370),
                                             std::make_tuple(1.2, 1.8, 0), std::make_tuple(1.2, 1.8, 370)}) {
        bar.setLimits(lower, upper);
        const QImage edge = bar.grab(QRect(left, 0, 30, 24)).toImage();
        int dark = 0;
        for (int y = 0; y < edge.height(); ++y)
            dark += int(darkColumns(edge, y).size());
        EXPECT_GT(dark, 10) << lower << " to " << upper << " at " << left;
    }

    // Over 20 decades the labels of 400 pixels can't all stand; what is drawn doesn't touch.
    bar.setLimits(-10, 10);
    const QImage many = bar.grab().toImage();
    int freeColumns = 0;
    for (int x = 0; x < many.width(); ++x) {
        bool isFree = true;
        for (int y = 0; y < 24; ++y)
            isFree = isFree && qGray(many.pixel(x, y)) > 90;
        freeColumns += isFree ? 1 : 0;
    }
    EXPECT_GT(freeColumns, 80);
    EXPECT_LT(freeColumns, 380);
}

} // namespace
