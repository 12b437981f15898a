#include "gui/browser/drawing/plotimage.h"
#include "support/seeds.h"

#include <map>

namespace {

using Tsb::PlotImage;

/// A picture of one number for each second, at a second a column.
class PlotImageTest : public Seeded<> {
protected:
    PlotImageTest()
    {
        moveTo(0);
        expectRight();
    }

    void moveTo(std::int64_t origin) { picture.setTimeScale({RecordTime(Ticks(1)), ticksPerSecond, origin}); }
    int columnOf(int second) const { return second + int(picture.timeScale().originPixel); }
    /// Changes the number, as if it reached some columns further.
    void change(int second)
    {
        ++numbers[second];
        picture.touch({columnOf(second) - 1, columnOf(second) + 2});
    }
    void resize(int width)
    {
        size.setWidth(width);
        picture.resize(size);
    }
    QRgb colorAt(int column) const
    {
        const int second = column - int(picture.timeScale().originPixel);
        const auto number = numbers.find(second);
        return qRgb(second & 255, (second >> 8) & 255, number == numbers.end() ? 0 : number->second & 255);
    }
    void expectRight()
    {
        drawn = picture.staleColumns(size);
        for (const PixelRange &run : drawn)
            for (int x = run.first; x < run.last; ++x)
                for (int y = 0; y < size.height(); ++y)
                    picture.canvas().setPixel(x, y, colorAt(x));
        ASSERT_EQ(picture.image().size(), size);
        for (int x = 0; x < size.width(); ++x)
            ASSERT_EQ(picture.image().pixel(x, size.height() - 1), colorAt(x)) << "column " << x;
    }

    PlotImage picture;
    QSize size{200, 2};
    std::map<int, int> numbers;
    std::vector<PixelRange> drawn;
};
INSTANTIATE_TEST_SUITE_P(Seeds, PlotImageTest, ::testing::ValuesIn(seeds(20)));

TEST_P(PlotImageTest, AWalkOfMovesSizesAndChangesIsRightWhenItIsDrawn)
{
    std::int64_t origin = 0;
    for (int i = 0; i < 500; ++i) {
        const int reach = pick(0, 9) == 0 ? 300 : 30; // now and then beyond the width
        if (pick(0, 1) == 0)
            moveTo(origin += pick(-reach, reach));
        if (pick(0, 1) == 0)
            change(pick(-250, 450) - int(origin));
        if (pick(0, 9) == 0)
            resize(pick(100, 300));
        if (pick(0, 2) == 0) {
            ASSERT_NO_FATAL_FAILURE(expectRight()) << "step " << i;
        }
    }
}

class PlotImageCases : public PlotImageTest {};
INSTANTIATE_TEST_SUITE_P(Once, PlotImageCases, ::testing::Values(1));

TEST_P(PlotImageCases, AnImageMadeWiderWhileAMoveIsUndrawnKeepsNoBareColumns)
{
    for (const int move : {-70, 70}) {
        for (const int back : {0, move / 2, move}) { // part of the move is taken back
            resize(200);
            expectRight();
            moveTo(picture.timeScale().originPixel + move);
            resize(300);
            moveTo(picture.timeScale().originPixel - back);
            expectRight();
        }
    }
}

TEST_P(PlotImageCases, AChangeWhileAMoveByTheWidthIsUndrawnIsNotLostWhenItIsTakenBack)
{
    moveTo(150);
    moveTo(280);
    change(30);
    moveTo(100);
    expectRight();
}

TEST_P(PlotImageCases, DrawsOnlyWhatIsStale)
{
    const auto expectDrawn = [this](const std::vector<PixelRange> &runs) {
        expectRight();
        EXPECT_EQ(drawn, runs);
    };
    expectDrawn({});
    change(10);
    change(12);
    expectDrawn({{9, 14}});
    moveTo(20);
    change(100);
    expectDrawn({{119, 122}, {0, 20}});
    moveTo(-20);
    expectDrawn({{160, 200}});
    change(1000);
    EXPECT_FALSE(picture.touch({-5, 0}));
    expectDrawn({});
    resize(150);
    expectDrawn({});
    resize(180);
    expectDrawn({{150, 180}});
    moveTo(-200);
    expectDrawn({{0, 180}});
    size.setHeight(3);
    EXPECT_TRUE(picture.resize(size));
    expectDrawn({{0, 180}});
    picture.setTimeScale({RecordTime(Ticks(2)), ticksPerSecond, -200}); // no whole number of columns
    expectDrawn({{0, 180}});
}

} // namespace
