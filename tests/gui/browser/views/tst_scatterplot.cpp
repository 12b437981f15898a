#include "gui/browser/views/scatterplotview.h"

#include "columns/scattersetup.h"
#include "columns/scattervalues.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/plots/scatterlabel.h"
#include "gui/browser/views/scatterpropertiesrow.h"
#include "llama/qyaml.h"
#include "support/plainmarkers.h"
#include "support/plotstore.h"
#include "support/seeds.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using SpectMath::Spectrum;
using Tsb::ScatterPlotView;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A scatter plot view over a store of two modes and two spectra, shown for real.
class Scatter : public ::testing::Test {
protected:
    void SetUp() override
    {
        metadata->electrometerGroups = {{"pos", {0, 2}}, {"neg", {2, 3}}};
        metadata->variables[0]->unit = "l/min";
        metadata->variables[0]->valueIndex = 1;
        uiInfo->setData(metadata, infos);
        uiInfo->publish();
        store.setLimitRecords(false);
        view.setUiInfo(uiInfo);
        view.setDatastore(&store);
        view.setTimeScale(TimeScale(testStart, ticksPerSecond, 0));
        view.setFixedHeight(160);
        view.resize(500, 160);
        view.show();
    }

    std::shared_ptr<Record> add(double begin, double value, int opmode = 0, double duration = 1)
    {
        auto full = testRecord(begin, begin + duration, opmode);
        for (RealVector *vector : {&full->variables, &full->currents, &full->rawCurrents, &full->currentVariances})
            *vector = RealVector(3, value);
        full->rawCurrents[1] = value + 1;
        full->currentVariances[1] = 4.0;
        store.addFullRecord(full);
        const auto record = store.at(store.lowerBoundIndex(full->beginTime));
        return record;
    }

    void addSpectra(const std::shared_ptr<Record> &record, double concentration, double rms, int status = 0)
    {
        SpectMath::SpectrumPointerList spectra;
        for (const auto &info : infos) {
            spectra.push_back(testSpectrum(info, concentration, status));
            spectra.back()->currentRmsError = rms;
        }
        store.addSpectra(resultFor(*record, spectra));
    }

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
    QImage drawnPlainly(const std::function<std::vector<std::pair<double, QColor>>(const Record &)> &pointsOf)
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

    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "particles"}, {"e0", "e1", "e2"}, {"flow"});
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    QList<UiInfo::InfoPointer> infos{testInfo("ions pos", testGrid(4, 1, std::sqrt(10))),
                                     testInfo("ions neg", testGrid(4, 1, std::sqrt(10)))};
    Datastore store;
    ScatterPlotView view;
};

using RandomScatter = Seeded<Scatter>;
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
                  return std::vector<std::pair<double, QColor>>{{record.variables[1], colorOf(record)}};
              }));

    view.setElectrometerSelection(1);
    view.showType(ScatterPlotSettings::Electrometer);
    view.scaleWidget()->setMinMax(0, 2, true);
    EXPECT_EQ(picture(), drawnPlainly([&](const Record &record) {
                  const QColor color = colorOf(record);
                  return std::vector<std::pair<double, QColor>>{
                      {record.rawCurrents[1], record.opmode < 0 ? color : Tsb::paleTint(color)},
                      {record.currents[1], color}};
              }));
}

TEST_P(RandomScatter, ConcentrationsOnAScaleOfDecades)
{
    std::uniform_real_distribution<double> uniform(-1, 4);
    for (int i = 0; i < 300; ++i) {
        const auto record = add(i, 0);
        addSpectra(record,
                   i % 10 == 0   ? 0.0
                   : i % 11 == 0 ? nan
                                 : std::pow(10, uniform(random)),
                   1, i % 13 == 0 ? 3 : 0);
    }
    view.showType(ScatterPlotSettings::Concentration);
    const QImage nothingChosen = view.plot()->grab().toImage();
    view.setVisibleSpectra({"absent"});
    EXPECT_NE(nothingChosen, view.plot()->grab().toImage()) << "the plot says that its spectra are to be chosen";
    view.setVisibleSpectra({infos[0]->hash, infos[1]->hash, "absent"});
    const double width = std::log10(infos[0]->radii[3]) - std::log10(infos[0]->radii[0]);
    EXPECT_EQ(picture(), drawnPlainly([&](const Record &record) {
                  std::vector<std::pair<double, QColor>> points;
                  for (const auto &spectrum : record.spectra) {
                      if (spectrum->status != 0)
                          continue;
                      const double total = spectrum->concentrations[0] * width; // the same at all points
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

TEST_F(Scatter, FitsItsScaleToWhatIsInSight)
{
    add(10, 2);
    add(20, 6);
    add(30, infinity);
    add(5000, 99);
    view.setDiagnosticSelection("flow");
    view.showType(ScatterPlotSettings::Variable);
    EXPECT_DOUBLE_EQ(view.scaleWidget()->minimum(), 2 - 0.2);
    EXPECT_DOUBLE_EQ(view.scaleWidget()->maximum(), 6 + 0.2);
    view.setTimeScale(TimeScale(testStart + Ticks(100 * ticksPerSecond), ticksPerSecond, 0));
    view.fitScale(); // nothing in sight
    EXPECT_DOUBLE_EQ(view.scaleWidget()->maximum(), 6 + 0.2);

    view.setCurrentRecord(store.at(store.size() - 1));
    view.showSelectedValue();
    EXPECT_GT(view.scaleWidget()->maximum(), 99);
    EXPECT_NEAR(view.scaleWidget()->maximum() - view.scaleWidget()->minimum(), 4.4, 1e-9);
}

TEST_F(Scatter, AChoiceInTheRowLeavesNoPlotOffItsScale)
{
    addSpectra(add(10, 2), 100, 1);
    addSpectra(add(20, 6), 1000, 3);
    const auto choose = [this](const char *toolTip, int index) {
        for (QComboBox *combo : view.propertiesRow()->findChildren<QComboBox *>())
            if (combo->toolTip() == toolTip)
                combo->setCurrentIndex(index);
    };
    view.showType(ScatterPlotSettings::Electrometer);
    view.scaleWidget()->setMinMax(3, 5, true);
    choose("Electrometer", 1);
    EXPECT_EQ(view.plotSettings().electrometerNumber, 1);
    EXPECT_EQ(view.scaleWidget()->maximum(), 5) << "to be compared with the other by the same scale";
    view.scaleWidget()->setMinMax(50, 60, true);
    choose("Electrometer", 2);
    EXPECT_DOUBLE_EQ(view.scaleWidget()->maximum(), 6.2);

    view.setVisibleSpectra({infos[0]->hash});
    view.showType(ScatterPlotSettings::Parameter);
    EXPECT_DOUBLE_EQ(view.scaleWidget()->maximum(), 3.1);
    view.scaleWidget()->setMinMax(0, 100, true);
    view.setSpectrumParameter(SpectrumParameter::SumBackError);
    choose("Inversion parameter", 0);
    EXPECT_DOUBLE_EQ(view.scaleWidget()->maximum(), 3.1) << "another quantity";
}

TEST_F(Scatter, ChoicesAreMadeWhenTheyAreFirstShown)
{
    ScatterPlotView bare;
    bare.setPropertiesVisible(false);
    bare.setUiInfo(uiInfo);
    bare.showType(ScatterPlotSettings::Electrometer);
    bare.resize(900, 160);
    bare.show();
    EXPECT_EQ(bare.propertiesRow(), nullptr);
    bare.setElectrometerSelection(2);
    bare.setPropertiesVisible(true);
    QApplication::processEvents();
    ASSERT_NE(bare.propertiesRow(), nullptr);
    EXPECT_TRUE(bare.propertiesRow()->isVisible());
    EXPECT_LE(bare.propertiesRow()->geometry().bottom(), bare.plot()->y());
    QComboBox *electrometer = nullptr;
    for (QComboBox *combo : bare.propertiesRow()->findChildren<QComboBox *>()) {
        if (combo->isVisible())
            electrometer = combo;
    }
    ASSERT_NE(electrometer, nullptr);
    EXPECT_EQ(electrometer->currentText(), "e2");
    electrometer->setCurrentIndex(1);
    EXPECT_EQ(bare.plotSettings().electrometerNumber, 1);
    bool plotCame = false; // Tab comes by the choices before the plot
    for (const QWidget *next = bare.nextInFocusChain(); next != electrometer; next = next->nextInFocusChain())
        plotCame = plotCame || next == bare.plot();
    EXPECT_FALSE(plotCame);
}

TEST_F(Scatter, NoChoiceIsCutInANarrowView)
{
    view.showType(ScatterPlotSettings::Concentration);
    view.propertiesRow()->findChild<QCheckBox *>()->setChecked(false);
    const auto *label = view.propertiesRow()->findChild<QLabel *>();
    const auto resizeTo = [this, label](int width) {
        view.resize(width, view.height());
        QApplication::processEvents();
        for (const QWidget *widget : view.propertiesRow()->findChildren<QWidget *>())
            if (widget->isVisible() && (qobject_cast<const QComboBox *>(widget) || widget == label)) {
                EXPECT_GE(widget->width(), widget->sizeHint().width()) << width << widget->metaObject()->className();
            }
        return label->isVisible();
    };
    int width = 1300;
    EXPECT_TRUE(resizeTo(width));
    while (width > 300 && resizeTo(width))
        width -= 20;
    EXPECT_GT(width, 500);
    for (const int narrow : {width - 50, 560})
        EXPECT_FALSE(resizeTo(narrow));
    EXPECT_TRUE(resizeTo(1300));
}

TEST_F(Scatter, TheSelectedRecordIsMarkedAndLabelled)
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

TEST_F(Scatter, OnlyWhatAKindShowsMakesItRepaint)
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

TEST(ScatterTexts, LabelsAndLines)
{
    ScatterPlotSettings settings;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "e1", ""), "Elm. e1");
    settings.showElectrometerNoise = true;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "e1", ""), "Elm. e1 noise");
    settings.type = ScatterPlotSettings::Variable;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "flow", "l/min"), "flow (l/min)");
    settings.type = ScatterPlotSettings::Concentration;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "", ""), QString::fromUtf8("Total concentration\n(#/cm³)"));
    settings.totalConcentration = false;
    settings.concentrationType = SpectMath::ConcentrationType::surface;
    settings.smallerLimit.diameter = 2.5;
    settings.largerLimit.diameter = 7;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "", ""), QString::fromUtf8("2.5 - 7 nm\n(nm²/cm³)"));
    settings.type = ScatterPlotSettings::Parameter;
    EXPECT_EQ(Tsb::scatterScaleLabel(settings, "", ""), "Reverse current root mean square error");
    EXPECT_EQ(Tsb::scatterLabelLine(qRgb(1, 2, 255), "a<%5>", 1234567, "fA"),
              "<font color='#0102ff'>a&lt;%5&gt;:</font> 1.23457e+06 (fA)");
    for (const char *key : {"BackErrorMeanSq", "BackErrorMeanAvg", "SumBackError"})
        EXPECT_EQ(toKey(spectrumParameterFromKey(key)), key);
    EXPECT_EQ(spectrumParameterFromKey("?"), SpectrumParameter::BackErrorMeanSq);
}

TEST_F(Scatter, SettingsGoRound)
{
    for (const int type : {0, 1, 2, 3}) {
        ScatterPlotView other;
        other.setUiInfo(uiInfo);
        other.showType(type);
        other.setElectrometerSelection(2);
        other.setDiagnosticSelection("unknown variable");
        other.setVisibleSpectra({infos[0]->hash, "an id that no data have"});
        other.setFractionScale(type == 2 ? SpectMath::DistributionScale::mobility
                                         : SpectMath::DistributionScale::diameter);
        other.setFractionSmallerLimit(0.5);
        other.setSpectrumParameter(SpectrumParameter::SumBackError);
        other.setDatalabelsEnabled(true);
        other.setPropertiesVisible(false);
        other.setFixedHeight(77);
        other.scaleWidget()->setMinMax(-3, 4, true);
        const QVariant stored = other.settings();
        view.setSettings(stored);
        EXPECT_EQ(view.settings(), stored) << type;
        EXPECT_TRUE(view.isScaleGiven());
    }
}

/// In the other unit the limit is no bound, in what is shown, drawn and stored.
TEST_F(Scatter, ALimitOf0InEitherUnitIsNoBoundInTheOther)
{
    using SpectMath::DistributionScale;
    view.showType(ScatterPlotSettings::Concentration);
    view.propertiesRow()->findChild<QCheckBox *>()->setChecked(false);
    const auto boxes = view.propertiesRow()->findChildren<ExpSpinBox *>();
    const auto weights = [this] { return Tsb::concentrationWeights(*infos[0], view.plotSettings()); };
    const auto label = [this] { return view.scaleWidget()->label().section('\n', 0, 0); };
    for (const auto &[given, other] : {std::make_pair(DistributionScale::mobility, DistributionScale::diameter),
                                       std::make_pair(DistributionScale::diameter, DistributionScale::mobility)}) {
        view.setFractionScale(given);
        view.setFractionSmallerLimit(1e-6);
        view.setFractionLargerLimit(0.5);
        const double nearly = sum(weights());
        view.setFractionSmallerLimit(0);
        EXPECT_TRUE(label().startsWith("0 - 0.5 ")) << label().toStdString();
        EXPECT_NEAR(sum(weights()), nearly, 1e-9);
        view.setFractionScale(other);
        EXPECT_TRUE(label().startsWith("∞ - ")) << label().toStdString();
        EXPECT_EQ(boxes[0]->findChild<QLineEdit *>()->text(), "∞");
        EXPECT_TRUE(boxes[0]->toolTip().contains("no bound"));
        EXPECT_NEAR(sum(weights()), nearly, 1e-9);
        for (const DistributionScale scale : {other, given}) {
            view.setFractionScale(scale);
            ScatterPlotView restored;
            restored.setSettings(Llama::yamlLoad(Llama::yamlDump(view.settings())).first());
            EXPECT_EQ(Llama::yamlDump(restored.settings()), Llama::yamlDump(view.settings()));
            restored.setFractionScale(given);
            EXPECT_EQ(restored.settings().toMap()[given == DistributionScale::mobility ? "mobilitySmallerLimit"
                                                                                       : "diameterSmallerLimit"],
                      0.0);
        }
    }
}

TEST_F(Scatter, AScaleThatNothingCanBeReadOnIsRefused)
{
    view.scaleWidget()->setMinMax(1, 7, true);
    for (const auto &range : {std::make_pair(5.0, 1.0), std::make_pair(3.0, 3.0), std::make_pair(-1.5e308, 1.5e308)}) {
        view.setSettings(QVariantMap{{"type", "electrometer"}, {"scaleMin", range.first}, {"scaleMax", range.second}});
        EXPECT_EQ(view.scaleWidget()->minimum(), 1);
        EXPECT_EQ(view.scaleWidget()->maximum(), 7);
        EXPECT_FALSE(view.isScaleGiven());
    }
}

} // namespace
