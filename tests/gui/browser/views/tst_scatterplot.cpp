#include "gui/browser/plots/opmodeplot.h"
#include "scatterfixture.h"
#include "support/plainmarkers.h"
#include "support/seeds.h"

#include <QTest>

#include <random>

namespace {

using Points = std::vector<std::pair<double, QColor>>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

class DrawnScatter : public Scatter {
protected:
    /// Drawn for the first time, and once more from what was kept then.
    QImage picture()
    {
        view.grab();
        const QImage first = view.plot()->image().copy();
        const TimeScale scale = view.plot()->timeScale();
        for (const std::int64_t perPixel : {scale.ticksPerPixel + 1, scale.ticksPerPixel}) {
            view.setTimeScale(TimeScale(scale.originTick, perPixel, scale.originPixel));
            view.grab();
        }
        EXPECT_EQ(view.plot()->image(), first);
        return first;
    }

    /// Every marker by single points, as the plain way would draw them.
    QImage drawnPlainly(const std::function<Points(const Record &)> &pointsOf)
    {
        const QSize size = view.plot()->contentsRect().size();
        PlainMarkers plain{QImage(size, QImage::Format_ARGB32_Premultiplied), 0, size.width()};
        plain.image.fill(Qt::white);
        const ValueScale scale = view.scaleWidget()->scale();
        for (const auto &record : store.records()) {
            const int column = int(std::floor(view.plot()->timeScale().positionOf(record->midTime) + 0.5));
            for (const auto &[value, color] : pointsOf(*record))
                plain.mark(column,
                           size.height() - ((value - scale.originValue) / scale.valuePerPixel + scale.originPixel),
                           color.rgb());
        }
        return plain.image;
    }
};

using RandomScatter = Seeded<DrawnScatter>;
INSTANTIATE_TEST_SUITE_P(Seeds, RandomScatter, ::testing::ValuesIn(seeds(3)));

TEST_P(RandomScatter, DrawsWhatSinglePointsWould)
{
    std::uniform_real_distribution<double> uniform(-0.3, 1.3);
    // Even first, then by bursts and gaps, at last with ends that go back and forth.
    double begin = 0;
    for (int i = 0; i < 1500; ++i) {
        begin += i < 500 ? 0.23 : 0.23 * std::pow(random() % 16 / 10.0, 4);
        const double duration = i < 1000 ? 1 : 0.1 + double(random() % 40);
        add(begin, i % 17 == 0 ? nan : uniform(random), i % 3 - 0 == 2 ? -1 : i % 2, duration);
    }
    view.setDiagnosticSelection("flow");
    view.showType(ScatterPlotSettings::Variable);
    view.scaleWidget()->setMinMax(0, 1, true);
    const auto colorOf = [this](const Record &record) {
        return record.opmode < 0 ? QColor(Qt::black) : uiInfo->opmodeColor(record.opmode);
    };
    EXPECT_EQ(picture(), drawnPlainly([&](const Record &record) {
                  return Points{{record.variables[1], colorOf(record)}};
              }));

    view.setElectrometerSelection(1);
    view.showType(ScatterPlotSettings::Electrometer);
    view.scaleWidget()->setMinMax(0, 2, true);
    EXPECT_EQ(picture(), drawnPlainly([&](const Record &record) {
                  const QColor color = colorOf(record);
                  return Points{{record.rawCurrents[1], record.opmode < 0 ? color : Tsb::paleTint(color)},
                                {record.currents[1], color}};
              }));
}

TEST_P(RandomScatter, ConcentrationsOnAScaleOfDecades)
{
    std::uniform_real_distribution<double> uniform(-1, 4);
    for (int i = 0; i < 300; ++i) {
        const double value = std::pow(10, uniform(random));
        addSpectra(add(i, 0), i % 10 == 0 ? 0.0 : i % 11 == 0 ? nan : value, 1, i % 13 == 0 ? 3 : 0);
    }
    view.showType(ScatterPlotSettings::Concentration);
    const QImage nothingChosen = view.plot()->grab().toImage();
    view.setVisibleSpectra({"absent"});
    EXPECT_NE(nothingChosen, view.plot()->grab().toImage()) << "the plot says that its spectra are to be chosen";
    view.setVisibleSpectra({infos[0]->hash, infos[1]->hash, "absent"});
    const double width = std::log10(infos[0]->radii[3]) - std::log10(infos[0]->radii[0]);
    EXPECT_EQ(picture(), drawnPlainly([&](const Record &record) {
                  Points points;
                  for (const auto &spectrum : record.spectra) {
                      const double total = spectrum->concentrations[0] * width; // the same at all points
                      if (spectrum->status == 0)
                          points.push_back({total > 0    ? std::log10(total)
                                            : total == 0 ? -infinity
                                                         : nan,
                                            uiInfo->spectrumColor(spectrum->info.get())});
                  }
                  return points;
              }));

    view.showType(ScatterPlotSettings::Parameter);
    EXPECT_EQ(view.plot()->minMax(), std::make_pair(1.0, 1.0));
    view.setSpectrumParameter(SpectrumParameter(7));
    EXPECT_TRUE(std::isnan(view.plot()->minMax().first));
    EXPECT_EQ(view.settings().toMap()["spectrumParameter"], QString());
}

TEST_P(RandomScatter, ThePictureGrowsWithTheStoreAsIfDrawnAnew)
{
    view.setVisibleSpectra({infos[0]->hash});
    for (const int type : {1, 2}) {
        view.setDiagnosticSelection("flow");
        view.showType(type);
        view.scaleWidget()->setMinMax(-1, 5, true);
        for (int i = 0; i < 400; ++i) {
            const double second = i % 7 == 0 ? 380 - i * 0.9 : i * 0.9; // some come late
            const auto record = add(second + type * 0.3, double(random() % 500) / 100);
            addSpectra(record, double(random() % 1000), 0);
            if (i % 50 == 0)
                view.grab();
        }
        const QImage grown = picture();
        view.plot()->reloadSetup();
        EXPECT_EQ(grown, picture()) << type;
    }
    store.setMaxRecords(100);
    store.setLimitRecords(true);
    add(500, 1);
    const QImage dropped = picture();
    view.plot()->reloadSetup();
    EXPECT_EQ(dropped, picture());
}

TEST_F(DrawnScatter, TheSelectedRecordIsMarkedAndLabelled)
{
    metadata->electrometerNames = {"an electrometer", "of a name that has", "several words in it"};
    const auto record = add(100, 2);
    view.setElectrometerSelection(2);
    view.showType(ScatterPlotSettings::Electrometer);
    view.setCurrentRecord(record);
    const QPoint origin = view.plot()->contentsRect().topLeft();
    const int x = qRound(view.plot()->timeScale().positionOf(record->midTime)),
              h = view.plot()->contentsRect().height();
    const QRgb color = uiInfo->opmodeColor(0).rgb();
    const auto shown = [this] { return view.plot()->grab().toImage(); };
    for (const bool above : {true, false}) {
        view.scaleWidget()->setMinMax(above ? -5 : 5, above ? 0 : 9, true);
        const QImage image = shown();
        const int edge = above ? 0 : h - 1, inwards = above ? 1 : -1;
        for (int row = 0; row < 2; ++row)
            for (const int beside : {-2, -1, 0, 1, 2}) {
                const QRgb pixel = image.pixel(origin + QPoint(x + beside, edge + inwards * row));
                EXPECT_EQ(pixel == color, std::abs(beside) <= row) << above << row << beside;
            }
        EXPECT_TRUE(QTest::qWaitFor([this] { return view.scaleWidget()->toolTip().contains("(off scale: 2)"); }));
    }
    view.scaleWidget()->setMinMax(0, 4, true);
    EXPECT_EQ(shown().pixel(origin + QPoint(x, qRound(h / 2.0))), qRgb(255, 255, 255)) << "hollow";
    EXPECT_TRUE(QTest::qWaitFor([this] { return !view.scaleWidget()->toolTip().contains("off scale"); }));

    // Both values have a line of their own, and none has two.
    const QImage before = shown();
    view.setDatalabelsEnabled(true);
    const QImage labelled = shown();
    QRect changed;
    for (int row = 0; row < before.height(); ++row)
        for (int column = x + 4; column < before.width(); ++column)
            if (before.pixel(column, row) != labelled.pixel(column, row))
                changed |= QRect(column, row, 1, 1);
    const QFontMetrics metrics = view.plot()->fontMetrics();
    EXPECT_GT(changed.height(), metrics.height());
    EXPECT_LE(changed.height(), 2 * metrics.height() + 4);
    EXPECT_GT(changed.width(), metrics.horizontalAdvance("several words in it neg: 2 (fA)") - 8);
}

TEST_F(DrawnScatter, OnlyWhatAKindShowsMakesItRepaint)
{
    const auto record = add(10, 2);
    view.setDiagnosticSelection("flow");
    view.showType(ScatterPlotSettings::Variable);
    view.scaleWidget()->setMinMax(0, 10, true);
    const QImage before = picture();
    addSpectra(record, 5, 1);
    EXPECT_EQ(before, picture());
    auto replaced = std::make_shared<Spectrometer::FullRecord>(*record);
    replaced->variables[1] = 7;
    store.updateFullRecord(replaced);
    EXPECT_NE(before, picture());
}

} // namespace
