#include "axis/spectrogramaxis.h"
#include "gui/browser/drawing/colorfit.h"
#include "gui/browser/drawing/spectrogramrenderer.h"
#include "gui/browser/plots/spectrogramplot.h"
#include "support/plotstore.h"
#include "support/seeds.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using SpectMath::DistributionScale;

/// A plot of 200 columns with a second a column, over records of two spectra in turn.
class SpectrogramPlotTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        store.setLimitRecords(false);
        for (int i = 0; i < 20; ++i)
            addSpectrumRecord(store, i * 10, i * 10 + 10, testSpectrum(i % 2 ? even : odd, std::pow(10, 1 + i * 0.1)));
        prepare(plot);
    }
    void prepare(Tsb::SpectrogramPlot &p)
    {
        p.resize(200 + 2 * p.frameWidth(), 40 + 2 * p.frameWidth());
        p.setColormap(Colormap::make(1));
        p.setSpectrum(odd, false);
        p.setTimeScale(TimeScale(testStart, ticksPerSecond, 0));
        p.setDatastore(&store);
        p.show();
    }
    QImage drawn(Tsb::SpectrogramPlot &p)
    {
        p.grab();
        return p.image().copy();
    }
    std::shared_ptr<Record> record(int index) { return store.at(index); }

    SpectMath::SpectrumInfoPointer odd = testInfo("odd", {1, 2, 4, 8});
    SpectMath::SpectrumInfoPointer even = testInfo("even", {1, 2, 4, 8});
    Datastore store;
    Tsb::SpectrogramPlot plot;
};

TEST_F(SpectrogramPlotTest, ShowsItsOwnSpectrumOnly)
{
    const QImage image = drawn(plot);
    const Colormap::Map map = Colormap::make(1);
    for (int i = 0; i < 20; ++i) {
        const QRgb expected = i % 2 ? qRgb(255, 255, 255) : map((std::log10(std::pow(10, 1 + i * 0.1)) - 1) / 2);
        EXPECT_EQ(image.pixel(i * 10 + 5, 20), expected) << i;
    }
    plot.setSpectrum(nullptr, false);
    EXPECT_EQ(drawn(plot).pixel(5, 20), qRgb(255, 255, 255));
    plot.setWhiteBackground(false);
    EXPECT_EQ(drawn(plot).pixel(5, 20), Tsb::spectrogramBackground(map, false).rgb());
}

TEST_F(SpectrogramPlotTest, TellsTheSizesOfItsAxis)
{
    const auto overRadii = testInfo("radii", {1, 2, 4, 8}, SpectMath::DistributionScale::radius);
    auto values = testSpectrum(overRadii, 1);
    values->concentrations[0] = std::numeric_limits<double>::quiet_NaN();
    values->concentrations[2] = 50;
    addSpectrumRecord(store, 300, 310, values);
    plot.setSpectrum(overRadii, false);
    plot.setCurrentRecord(record(20));
    EXPECT_TRUE(plot.selectionText().endsWith("highest at 8 nm")) << plot.selectionText().toStdString();
}

TEST_F(SpectrogramPlotTest, EverySetterShows)
{
    QImage before = drawn(plot);
    const auto changed = [&] {
        const QImage now = drawn(plot);
        const bool different = now != before;
        before = now;
        return different;
    };
    plot.setColorLimits(0, 5);
    EXPECT_TRUE(changed());
    plot.setColormap(Colormap::make(4));
    EXPECT_TRUE(changed());
    plot.setSpectrum(even, false);
    EXPECT_TRUE(changed());
    plot.setFillGaps(true); // gaps of 10 close by 5 between inner records
    EXPECT_TRUE(changed());
    plot.setWhiteBackground(false);
    plot.setFillGaps(false);
    EXPECT_TRUE(changed());
    auto sloping = testSpectrum(even, 1);
    for (std::size_t i = 0; i < 4; ++i)
        sloping->concentrations[i] = std::pow(30, double(i));
    addSpectrumRecord(store, 400, 410, sloping);
    plot.setTimeScale(TimeScale(testStart, ticksPerSecond, -300));
    EXPECT_TRUE(changed());
    plot.setSpectrum(even, true);
    EXPECT_TRUE(changed()) << "rows reversed";
    plot.setSmoothingCoef(2);
    EXPECT_TRUE(changed());
    plot.setSmoothingCoef(0);
    EXPECT_TRUE(changed());
}

using RandomChanges = Seeded<SpectrogramPlotTest>;
INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, ::testing::ValuesIn(seeds(3)));

TEST_P(RandomChanges, RedrawWhatTheyTouch)
{
    for (int round = 0; round < 60; ++round) {
        const int kind = int(random() % 4);
        const int at = 205 + int(random() % 900);
        if (kind == 0) {
            addSpectrumRecord(store, at, at + 1, testSpectrum(odd, 500));
        } else if (kind == 1) { // a new result of a known record
            const auto &changed = *record(int(random() % unsigned(store.size())));
            store.replaceSpectra(
                resultFor(changed, {testSpectrum(odd, double(10 + random() % 900), random() % 4 ? 0 : 1)}));
        } else if (kind == 2) {
            plot.setTimeScale(TimeScale(testStart, ticksPerSecond, -int(random() % 700)));
        } else {
            store.updateFullRecord(std::make_shared<Spectrometer::FullRecord>(*record(0)));
        }
        const QImage incremental = drawn(plot);
        Tsb::SpectrogramPlot fresh;
        prepare(fresh);
        fresh.setTimeScale(plot.timeScale());
        ASSERT_EQ(drawn(fresh), incremental) << "round " << round << ", kind " << kind;
    }
    store.removeSpectrum(odd.get());
    plot.setTimeScale(TimeScale(testStart, 2 * ticksPerSecond, 0));
    EXPECT_EQ(drawn(plot).pixel(2, 20), qRgb(255, 255, 255));
}

TEST_F(SpectrogramPlotTest, AClickFindsARecordWithThisSpectrum)
{
    QSignalSpy chosen(&plot, &Tsb::Plot::recordChosen);
    const auto clicked = [&](int column) {
        QTest::mouseClick(&plot, Qt::LeftButton, {}, plot.contentsRect().topLeft() + QPoint(column, 5));
        return chosen.isEmpty() ? nullptr : chosen.takeLast()[0].value<std::shared_ptr<Record>>();
    };
    EXPECT_EQ(clicked(5), record(0));
    EXPECT_EQ(clicked(13), record(0)) << "in a record of another spectrum, nearer to the one before";
    EXPECT_EQ(clicked(17), record(2));
    EXPECT_EQ(clicked(199), record(18));
    plot.setSpectrum(nullptr, false);
    EXPECT_EQ(clicked(5), nullptr);
}

TEST_F(SpectrogramPlotTest, TheCurrentRecordStandsOutPale)
{
    const QImage before = plot.grab().toImage();
    plot.setCurrentRecord(record(1)); // has the other spectrum
    EXPECT_EQ(plot.grab().toImage(), before);
    plot.setCurrentRecord(record(2));
    const QImage with = plot.grab().toImage();
    const QPoint origin = plot.contentsRect().topLeft();
    for (int column = 15; column < 35; ++column) {
        const QPoint place = origin + QPoint(column, 20);
        EXPECT_EQ(with.pixel(place) != before.pixel(place), column >= 20 && column <= 29) << column;
        if (column >= 20 && column <= 30) {
            EXPECT_NEAR(qRed(with.pixel(place)), 176 + qRed(before.pixel(place)) * 79 / 255, 2) << column;
        }
    }
    plot.setCurrentRecord(nullptr);
    EXPECT_EQ(plot.grab().toImage(), before);
}

TEST_F(SpectrogramPlotTest, DrawsOnAnyDevice)
{
    class Exposed : public Tsb::SpectrogramPlot {
    public:
        using Tsb::SpectrogramPlot::drawRange;
    };
    Exposed exposed;
    prepare(exposed);
    exposed.setWhiteBackground(true);
    QImage direct(200, 40, QImage::Format_ARGB32_Premultiplied), other(200, 40, QImage::Format_RGB888);
    for (QImage *image : {&direct, &other}) {
        image->fill(Qt::white);
        QPainter painter(image);
        exposed.drawRange(painter, 0, 70);
        exposed.drawRange(painter, 70, 200);
    }
    EXPECT_EQ(other.convertToFormat(QImage::Format_RGB32), direct.convertToFormat(QImage::Format_RGB32));
    EXPECT_EQ(drawn(exposed), direct);
}

TEST(SpectrogramAxisTest, SmallestParticlesAreAtTheBottom)
{
    struct Case {
        DistributionScale scale;
        std::vector<double> grid;
        double bottom, top;
        bool reversed;
    };
    const Case cases[] = {
        {DistributionScale::mobility, {0.001, 0.01, 1}, 1, 0.001, true},
        {DistributionScale::mobility, {1, 0.01, 0.001}, 1, 0.001, false},
        {DistributionScale::radius, {1, 5, 20}, 2, 40, false},
        {DistributionScale::radius, {20, 5, 1}, 2, 40, true},
        {DistributionScale::diameter, {1, 20}, 1, 20, false},
        {DistributionScale::diameter, {20, 1}, 1, 20, true},
    };
    for (const Case &c : cases) {
        const auto axis = Tsb::spectrogramAxis(*testInfo("x", c.grid, c.scale));
        ASSERT_TRUE(axis);
        EXPECT_DOUBLE_EQ(axis->bottom, std::log10(c.bottom));
        EXPECT_DOUBLE_EQ(axis->top, std::log10(c.top));
        EXPECT_EQ(axis->reversedRows, c.reversed);
    }
    EXPECT_FALSE(Tsb::spectrogramAxis(*testInfo("x", {5})));
    EXPECT_FALSE(Tsb::spectrogramAxis(*testInfo("x", {})));
}

} // namespace
