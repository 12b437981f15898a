#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/views/viewholder.h"
#include "support/gestures.h"

#include <QFrame>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using Tsb::viewGeometry;
using Tsb::ViewRow;

constexpr bool shared = true, shown = true;

TEST(ViewGeometry, SharedRowsTakeWhatSingleRowsLeave)
{
    const auto geometry = viewGeometry(
        {500, 200}, 2, 100, {{shared, shown, 0}, {false, shown, 20}, {shared, shown, 0}, {false, !shown, 30}});
    EXPECT_EQ(geometry.title, QRect(0, 0, 16, 200));
    EXPECT_EQ(geometry.left[0], QRect(18, 0, 80, 88));
    EXPECT_EQ(geometry.right[0], QRect(100, 0, 400, 88)) << "the plot begins at the left margin";
    EXPECT_EQ(geometry.left[1], QRect(18, 90, 482, 20)) << "a single row takes the full width";
    EXPECT_EQ(geometry.right[2], QRect(100, 112, 400, 88)) << "down to the last pixel";
    EXPECT_TRUE(geometry.left[3].isNull());
}

TEST(ViewGeometry, NothingIsNegative)
{
    for (const int width : {0, 1, 10, 16, 17, 18, 50, 100, 101}) {
        for (const int height : {0, 1, 15, 40}) {
            for (const int margin : {-5, 0, 18, 60, 1000}) {
                const auto geometry = viewGeometry({width, height}, 2, margin,
                                                   {{shared, shown, 0}, {false, shown, 30}, {shared, shown, 0}});
                for (const QRect &rect : geometry.left + geometry.right) {
                    EXPECT_GE(rect.width(), 0);
                    EXPECT_GE(rect.height(), 0);
                    EXPECT_LE(rect.x() + rect.width(), width) << width << " " << margin;
                }
            }
        }
    }
}

TEST(ViewLayout, CountsAndTakesItems)
{
    QWidget parent;
    auto *layout = new Tsb::ViewLayout(&parent);
    std::vector<QWidget *> widgets;
    for (int i = 0; i < 5; ++i)
        widgets.push_back(new QWidget(&parent));
    layout->setTitleItem(widgets[0]);
    layout->insertRow(0, widgets[1], widgets[2]);
    layout->insertRow(1, nullptr, widgets[3]);
    layout->insertRow(0, widgets[4], nullptr);
    const int order[] = {0, 4, 1, 2, 3};
    ASSERT_EQ(layout->count(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(layout->itemAt(i)->widget(), widgets[std::size_t(order[i])]);
    EXPECT_EQ(layout->itemAt(5), nullptr);
    EXPECT_EQ(layout->itemAt(-1), nullptr);
    delete layout->takeAt(1);
    EXPECT_EQ(layout->rowCount(), 2) << "a row without a right item goes with its left one";
    delete layout->takeAt(1);
    EXPECT_EQ(layout->rowWidgets(0), qMakePair(static_cast<QWidget *>(nullptr), widgets[2]));
    layout->removeRow(0);
    EXPECT_EQ(layout->count(), 2);
    delete widgets[3]; // a dying widget takes its item along
    EXPECT_EQ(layout->count(), 1);
    EXPECT_EQ(layout->takeAt(9), nullptr);
}

TEST(DropIndex, FollowsTheTopOfTheDraggedView)
{
    // Three views of 100, spacing 2; the layout keeps the place of the dragged one free.
    const QVector<QRect> items{{0, 0, 50, 100}, {0, 102, 50, 100}, {0, 204, 50, 100}};
    const struct {
        int placeholder, y, index;
    } cases[] = {{0, 0, 0},  {0, 50, 0},  {0, 51, 1},  {0, 152, 1}, {0, 153, 2}, {0, 900, 2}, {1, 102, 1}, {1, 50, 0},
                 {1, 51, 1}, {1, 152, 1}, {1, 153, 2}, {1, -90, 0}, {2, 204, 2}, {2, 152, 1}, {2, 50, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(Tsb::dropIndex(items, c.placeholder, 2, c.y), c.index) << c.placeholder << " at " << c.y;
    EXPECT_EQ(Tsb::dropIndex({}, 0, 2, 10), 0);
}

TEST(Resizer, SetsTheHeightWithinItsLimits)
{
    QWidget window;
    auto *target = new QWidget(&window);
    target->setFixedHeight(100);
    Tsb::Resizer grip(target, &window);
    grip.resize(100, 6);
    EXPECT_GE(grip.sizeHint().height(), 6);
    const auto drag = [&grip](int dy) {
        dragMouse(&grip, {5, 3}, {{5, 3 + dy}});
        sendMouse(&grip, QEvent::MouseMove, {5, 900}, Qt::NoButton);
    };
    drag(50);
    EXPECT_EQ(target->height(), 150);
    drag(-500);
    EXPECT_EQ(target->height(), 32);
    grip.setMaximumTargetHeight(200);
    drag(5000);
    EXPECT_EQ(target->height(), 200);
    delete target;
    drag(10);
}

} // namespace
