#include "gui/common/pictures/picturefile.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace {

/// A coloured square in each of `count` cells along one direction.
PictureFile::Drawing chain(Qt::Orientation orientation, int count, QPoint frameStart)
{
    constexpr int cell = 100;
    const auto cellRect = [=](int i) {
        return orientation == Qt::Horizontal ? QRect(i * cell, 0, cell, cell) : QRect(0, i * cell, cell, cell);
    };
    const QRect frame = QRect(frameStart, cellRect(count - 1).bottomRight());
    return {frame, 96, Qt::white, "chain", [=](QPainter &painter) {
                for (int i = 0; i < count; ++i)
                    painter.fillRect(cellRect(i).adjusted(25, 25, -25, -25), QColor(1 + i % 200, 0, 0));
            }};
}

} // namespace

TEST(PictureFile, LargePicturesAreDrawnToTheirEnds)
{
    const struct {
        Qt::Orientation orientation;
        int count;
        double ratio;
        QPoint start;
    } cases[] = {{Qt::Vertical, 700, 1, {}},         {Qt::Vertical, 401, 2, {}},     {Qt::Vertical, 400, 1.5, {}},
                 {Qt::Horizontal, 400, 1, {}},       {Qt::Horizontal, 200, 4, {}},   {Qt::Vertical, 400, 2, {20, 10}},
                 {Qt::Horizontal, 700, 1, {30, -4}}, {Qt::Vertical, 3, 2, {-10, -5}}};
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.orientation << ' ' << c.count << ' ' << c.ratio);
        const PictureFile::Drawing drawing = chain(c.orientation, c.count, c.start);
        const QImage image = PictureFile::imageOf(drawing, c.ratio);
        ASSERT_EQ(image.size(), (QSizeF(drawing.frame.size()) * c.ratio).toSize());
        EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white)) << "the ground";
        for (int i = 0; i < c.count; ++i) {
            const QPoint centre = c.orientation == Qt::Horizontal ? QPoint(i * 100 + 50, 50) : QPoint(50, i * 100 + 50);
            const QPoint pixel = (QPointF(centre - c.start) * c.ratio).toPoint();
            ASSERT_EQ(image.pixelColor(pixel), QColor(1 + i % 200, 0, 0)) << i;
            ASSERT_EQ(image.pixelColor(pixel + (QPointF(0, 40) * c.ratio).toPoint()), QColor(Qt::white)) << i;
        }
    }
}
