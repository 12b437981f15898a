#include "axis/scaletitle.h"
#include "gui/browser/controls/cursorwrap.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "support/gestures.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

using Tsb::VerticalScaleWidget;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class VerticalScaleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        widget.resize(80, 200 + 2 * widget.frameWidth());
        widget.setMinMax(0, 100, true);
        widget.show();
    }
    /// The place h pixels above the contents' bottom edge.
    QPoint above(int h, int x = 40) const
    {
        const QRect area = widget.contentsRect();
        return {x, area.y() + area.height() - h};
    }
    void mouse(QEvent::Type type, const QPoint &pos)
    {
        sendMouse(&widget, type, pos, Qt::LeftButton, {}, {{300, 300}});
    }
    void drag(const QPoint &from, const QPoint &to)
    {
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, to);
        mouse(QEvent::MouseButtonRelease, to);
    }
    bool wheel(const QPoint &pos, const QPoint &delta) { return turnWheel(&widget, pos, delta); }
    QImage picture() { return widget.grab().toImage(); }

    VerticalScaleWidget widget;
};

TEST_F(VerticalScaleTest, ScaleFollowsTheRangeAndBack)
{
    EXPECT_TRUE(widget.scale().valid);
    EXPECT_DOUBLE_EQ(widget.scale().value(0), 0);
    EXPECT_DOUBLE_EQ(widget.scale().value(200), 100);
    QSignalSpy ranges(&widget, &VerticalScaleWidget::minMaxChanged);
    QSignalSpy scales(&widget, &VerticalScaleWidget::scaleChanged);
    widget.setMinMax(0, 100, true);
    EXPECT_EQ(ranges.size() + scales.size(), 0);
    widget.setScale({true, 10, 0.25, 0}, true);
    EXPECT_EQ(widget.minimum(), 10);
    EXPECT_EQ(widget.maximum(), 60);
    EXPECT_EQ(ranges.size(), 1);
    EXPECT_EQ(scales.size(), 1);

    widget.resize(80, 400 + 2 * widget.frameWidth());
    EXPECT_EQ(widget.maximum(), 60) << "a resize keeps the range";
    EXPECT_DOUBLE_EQ(widget.scale().value(400), 60);
    widget.resize(80, 0);
    EXPECT_FALSE(widget.scale().valid);
    widget.resize(80, 100 + 2 * widget.frameWidth());
    EXPECT_DOUBLE_EQ(widget.scale().value(100), 60);
}

TEST_F(VerticalScaleTest, KeysDoWhatTheMouseDoes)
{
    const struct {
        int key;
        double minimum, maximum;
    } table[] = {{Qt::Key_Up, 10, 110}, {Qt::Key_Down, 0, 100}, {Qt::Key_Plus, 5, 95}, {Qt::Key_Minus, 0, 100}};
    for (const auto &row : table) {
        QTest::keyClick(&widget, Qt::Key(row.key));
        EXPECT_NEAR(widget.minimum(), row.minimum, 1e-9) << row.key;
        EXPECT_NEAR(widget.maximum(), row.maximum, 1e-9) << row.key;
    }
    QSignalSpy fits(&widget, &VerticalScaleWidget::requestAutoscale);
    QTest::keyClick(&widget, Qt::Key_Home);
    EXPECT_EQ(fits.size(), 1);
    widget.setReadOnly(true);
    QTest::keyClick(&widget, Qt::Key_Up);
    EXPECT_EQ(widget.minimum(), 0);
    EXPECT_EQ(widget.focusPolicy(), Qt::NoFocus);
}

TEST_F(VerticalScaleTest, AbsurdRangesArePaintedWithoutTrouble)
{
    for (auto [lower, upper] : std::vector<std::pair<double, double>>{{nan, nan},
                                                                      {nan, 1},
                                                                      {5, 5},
                                                                      {1e308, -1e308},
                                                                      {0, INFINITY},
                                                                      {0, 5e-324},
                                                                      {1e16, 1e16 + 4},
                                                                      {-4000, 4000}}) {
        for (bool logarithmic : {false, true}) {
            widget.setAppearLog(logarithmic);
            widget.setMinMax(lower, upper, true);
            widget.setLabel(QStringLiteral("x"));
            widget.showCursor(true, 50);
            EXPECT_FALSE(picture().isNull());
        }
    }
}

TEST_F(VerticalScaleTest, DragPansUpAndDownAndZoomsSideways)
{
    const double grabbed = widget.scale().value(50);
    drag(above(50), above(90));
    EXPECT_NEAR(widget.scale().value(90), grabbed, 1e-9);
    EXPECT_NEAR(widget.maximum() - widget.minimum(), 100, 1e-9);

    const double held = widget.scale().value(50);
    drag(above(50, 20), above(50, 60));
    EXPECT_NEAR(widget.scale().value(50), held, 1e-9) << "zoom about the press point";
    EXPECT_NEAR(widget.maximum() - widget.minimum(), 100 * std::pow(0.99, 40), 1e-9);

    widget.setMinMax(3, 3, true);
    drag(above(50), above(90));
    EXPECT_EQ(widget.minimum(), 3) << "a scale without extent can't be dragged";
}

TEST_F(VerticalScaleTest, ALostReleaseEndsADragToo)
{
    mouse(QEvent::MouseButtonPress, above(100));
    sendMouse(&widget, QEvent::MouseMove, above(50), Qt::NoButton, {}, QPoint(300, 300));
    EXPECT_EQ(widget.minimum(), 0);
    drag(above(50), above(100));
    EXPECT_DOUBLE_EQ(widget.minimum(), -25);
}

TEST_F(VerticalScaleTest, WheelZoomsAboutThePointer)
{
    const double held = widget.scale().value(150);
    EXPECT_TRUE(wheel(above(150), {0, 120}));
    EXPECT_NEAR(widget.scale().value(150), held, 1e-9);
    EXPECT_NEAR(widget.maximum() - widget.minimum(), 90, 1e-9);
    const ValueScale before = widget.scale();
    EXPECT_TRUE(wheel(above(150), {120, 0}));
    EXPECT_EQ(widget.scale(), before);
    for (int i = 0; i < 200; ++i)
        wheel(above(100), {0, 12000});
    EXPECT_TRUE(widget.scale().isUsable(200)) << "zoomed to the end of what doubles can tell apart";
}

TEST_F(VerticalScaleTest, ReadOnlyTakesNothing)
{
    EXPECT_EQ(widget.cursor().shape(), Qt::OpenHandCursor);
    EXPECT_FALSE(widget.statusTip().isEmpty());
    widget.setReadOnly(true);
    EXPECT_EQ(widget.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(widget.statusTip().isEmpty());
    QSignalSpy autoscale(&widget, &VerticalScaleWidget::requestAutoscale);
    const ValueScale before = widget.scale();
    drag(above(50), above(90));
    wheel(above(50), {0, 120});
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, above(50));
    EXPECT_EQ(widget.scale(), before);
    EXPECT_EQ(autoscale.size(), 0);
    widget.setReadOnly(false);
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, above(50));
    EXPECT_EQ(autoscale.size(), 1);
}

TEST_F(VerticalScaleTest, CursorShowsItsValueOverTheTicks)
{
    widget.setLabel(QStringLiteral("Label"));
    const QImage before = picture();
    widget.showCursor(true, above(100).y());
    const QImage with = picture();
    EXPECT_NE(before, with);
    // Nothing changes away from the cursor's band.
    const int band = widget.fontMetrics().height() + 4;
    const qreal ratio = with.devicePixelRatio();
    const auto size = std::size_t(with.bytesPerLine());
    for (int y = 0; y < with.height(); ++y) {
        if (std::abs(y / ratio - above(100).y()) <= band)
            continue;
        EXPECT_EQ(std::memcmp(before.constScanLine(y), with.constScanLine(y), size), 0) << y;
    }
    const int besideNumbers = widget.contentsRect().right() - 6 - widget.fontMetrics().horizontalAdvance("100");
    const auto title = [&](const QImage &image) {
        return image.copy(0, 0, int(besideNumbers * ratio), image.height());
    };
    EXPECT_EQ(title(before), title(with)) << "the title is not covered";
    widget.showCursor(false, 0);
    EXPECT_EQ(picture(), before);
}

TEST_F(VerticalScaleTest, LabelsAtTheEdgesAreWhole)
{
    widget.setFrameShape(QFrame::NoFrame);
    // The ink of the labels at the edges is as high as that of the one in the middle.
    const auto inkRows = [this](int from, int to) {
        const QImage image = picture();
        int rows = 0;
        for (int y = from; y < to; ++y) {
            bool ink = false;
            for (int x = 30; x < 70; ++x)
                ink = ink || qGray(image.pixel(x, y)) < 200;
            rows += ink ? 1 : 0;
        }
        return rows;
    };
    const int line = widget.fontMetrics().height();
    widget.resize(80, 4 * line);
    widget.setMinMax(0, 20, true); // labels at 0, 10 and 20
    const int middle = inkRows(2 * line - line / 2, 2 * line + line / 2);
    EXPECT_GT(middle, line / 3);
    EXPECT_EQ(inkRows(3 * line, 4 * line), middle);
    EXPECT_EQ(inkRows(0, line), middle);
}

TEST_F(VerticalScaleTest, NamesAreShownToTheirEnds)
{
    // Too long for one line upwards, and a word of them for one across: word by word upwards.
    const int line = widget.fontMetrics().height();
    const QString word = QStringLiteral("concentration");
    widget.resize(6 * line, widget.fontMetrics().horizontalAdvance(word) + 10);
    const auto pictureOf = [this](const QString &label) {
        widget.setLabel(label);
        return picture();
    };
    EXPECT_NE(pictureOf("Total " + word + "\n(nm)"), pictureOf("Total concentratioM\n(nm)"));
    EXPECT_NE(pictureOf("Total " + word + "\n(nm)"), pictureOf("Total " + word + "\n(nM)"));
    // Where there is no room for all, the last line tells that it goes on.
    const QString many = QStringLiteral("many words one below the other");
    widget.resize(7 * line, 3 * line + widget.frameWidth() * 2);
    EXPECT_NE(pictureOf(many), pictureOf("many words one"));
}

TEST(CursorWrap, JumpsFromAnEdgeOfItsScreenToTheOther)
{
    EXPECT_EQ(Tsb::cursorJumpAtScreenEdge({4, 300}, {0, 0, 800, 600}), QPoint(790, 0));
    EXPECT_EQ(Tsb::cursorJumpAtScreenEdge({796, 596}, {0, 0, 800, 600}), QPoint(-790, -590));
    EXPECT_EQ(Tsb::cursorJumpAtScreenEdge({5, 595}, {0, 0, 800, 600}), QPoint());
    EXPECT_EQ(Tsb::cursorJumpAtScreenEdge({1604, 40}, {1600, 0, 800, 600}), QPoint(790, 0));
}

/// Each character 7 pixels wide, lines 15 high.
TEST(ScaleTitle, IsShownWholeWhereverItFits)
{
    struct Case {
        const char *label;
        int freeWidth, height, icon;
        bool upwards;
        QStringList lines;
    };
    const Case cases[] = {
        {"ions neg\n(1/cm^3)", 60, 100, 14, true, {"ions neg", "(1/cm^3)"}},
        {"ions neg\n(1/cm^3)", 60, 62, 14, false, {"ions", "neg", "(1/cm^3)"}},
        {"ions neg\n(1/cm^3)", 80, 40, 14, false, {"ions neg", "(1/cm^3)"}},
        {"Total concentration\n(#/cm3)", 60, 112, 0, true, {"Total", "concentration", "(#/cm3)"}},
        {"temperature.mean (C)", 80, 120, 0, true, {"temperature.mean", "(C)"}},
        {"temperature.mean (C)", 35, 100, 0, true, {"temperature.", "mean (C)"}},
        {"ions neg\n(1/cm^3)", 50, 66, 14, true, {"ions", "neg", "(1/cm^3)"}},
        {"Total concentration\n(#/cm3)", 36, 112, 0, true, {"Total concentration", "(#/cm3)"}}, // to be shortened
        {"temperature.mean (C)", 72, 70, 0, false, {"temperature.", "mean (C)"}},               // likewise
        {"temperature.mean (C)", 14, 70, 0, false, {}},
        {"abc defg hij klm", 30, 30, 0, false, {"abc", "defg hij"}}, // shortened, which shows that it goes on
        {"", 60, 100, 0, true, {""}},
        {"ions", 0, 0, 14, false, {}},
    };
    for (const Case &c : cases) {
        Tsb::TitleRoom room;
        room.lineHeight = 15;
        room.firstLine = c.freeWidth - c.icon;
        room.line = c.freeWidth;
        room.lines = c.height / 15;
        room.firstUpwards = c.height - (c.icon > 0 ? 15 : 0);
        room.upwards = c.height;
        room.depth = c.freeWidth;
        const auto plan =
            Tsb::planTitle(QString::fromLatin1(c.label), room, [](const QString &text) { return 7 * text.size(); });
        EXPECT_EQ(plan.upwards, c.upwards) << c.label << " " << c.freeWidth << " " << c.height;
        EXPECT_EQ(plan.lines, c.lines) << plan.lines.join('|').toStdString();
    }
}

} // namespace
