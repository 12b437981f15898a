#include "columns/scattersetup.h"
#include "columns/scattervalues.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/plots/scatterlabel.h"
#include "gui/browser/views/scatterpropertiesrow.h"
#include "llama/qyaml.h"
#include "scatterfixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace {

using Tsb::ScatterPlotView;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST_F(Scatter, FitsItsScaleToWhatIsInSight)
{
    const auto *scale = view.scaleWidget();
    add(10, 2);
    add(20, 6);
    add(30, infinity);
    add(5000, 99);
    view.setDiagnosticSelection("flow");
    view.showType(ScatterPlotSettings::Variable);
    EXPECT_DOUBLE_EQ(scale->minimum(), 2 - 0.2);
    EXPECT_DOUBLE_EQ(scale->maximum(), 6 + 0.2);
    view.setTimeScale(TimeScale(testStart + Ticks(100 * ticksPerSecond), ticksPerSecond, 0));
    view.fitScale(); // nothing in sight
    EXPECT_DOUBLE_EQ(scale->maximum(), 6 + 0.2);
    view.setCurrentRecord(store.at(store.size() - 1));
    view.showSelectedValue();
    EXPECT_GT(scale->maximum(), 99);
    EXPECT_NEAR(scale->maximum() - scale->minimum(), 4.4, 1e-9);
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
    const auto *row = bare.propertiesRow();
    ASSERT_TRUE(row && row->isVisible());
    EXPECT_LE(row->geometry().bottom(), bare.plot()->y());
    const auto combos = row->findChildren<QComboBox *>();
    const auto found = std::find_if(combos.begin(), combos.end(), [](auto *combo) { return combo->isVisible(); });
    ASSERT_NE(found, combos.end());
    EXPECT_EQ((*found)->currentText(), "e2");
    (*found)->setCurrentIndex(1);
    EXPECT_EQ(bare.plotSettings().electrometerNumber, 1);
    for (const QWidget *next = bare.nextInFocusChain(); next != *found; next = next->nextInFocusChain())
        EXPECT_NE(next, bare.plot()) << "Tab comes by the choices before the plot";
}

TEST_F(Scatter, NoChoiceIsCutInANarrowView)
{
    view.showType(ScatterPlotSettings::Concentration);
    view.propertiesRow()->findChild<QCheckBox *>()->setChecked(false);
    const auto *label = view.propertiesRow()->findChild<QLabel *>();
    const auto combos = view.propertiesRow()->findChildren<QComboBox *>();
    const auto isLabelSeenAt = [&](int width) {
        view.resize(width, view.height());
        QApplication::processEvents();
        for (const QComboBox *combo : combos)
            EXPECT_TRUE(!combo->isVisible() || combo->width() >= combo->sizeHint().width()) << width;
        EXPECT_TRUE(!label->isVisible() || label->width() >= label->sizeHint().width()) << width;
        return label->isVisible();
    };
    int width = 1300;
    EXPECT_TRUE(isLabelSeenAt(width));
    while (width > 300 && isLabelSeenAt(width))
        width -= 20;
    EXPECT_GT(width, 500);
    for (const int narrow : {width - 50, 560})
        EXPECT_FALSE(isLabelSeenAt(narrow));
    EXPECT_TRUE(isLabelSeenAt(1300));
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
