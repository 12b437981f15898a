#include "columns/scattersetup.h"
#include "gui/common/dataexport/plotfields.h"

#include <gtest/gtest.h>

namespace {

using SpectMath::DistributionScale;

QVariantMap plot(const QVariant &settings, const QString &type = "scatterplot")
{
    return {{"type", type}, {"settings", settings}};
}

QVariantMap storedFraction(DistributionScale scale, double low, double high)
{
    ScatterPlotSettings settings;
    settings.type = ScatterPlotSettings::Concentration;
    settings.totalConcentration = false;
    settings.concentrationType = SpectMath::ConcentrationType::surface;
    settings.fractionScale = scale;
    settings.smallerLimit = Tsb::fractionLimit(scale, low);
    settings.largerLimit = Tsb::fractionLimit(scale, high);
    settings.visibleSpectra = {"a"};
    return Tsb::scatterSetup(settings);
}

QVariantMap field(const QString &type, const QVariantList &spectra, const QString &limits = {},
                  const QString &scale = {})
{
    QVariantMap map{{"type", "concentration"},
                    {"spectra", spectra},
                    {"concentration_type", type},
                    {"total_concentration_enabled", limits.isEmpty()}};
    if (!limits.isEmpty()) {
        map["custom_fractions_enabled"] = true;
        map["custom_fractions_data"] = limits;
        map["custom_fractions_scale"] = scale;
    }
    return map;
}

} // namespace

TEST(PlotFields, AreTheConcentrationsThatScatterPlotsShow)
{
    const QVariantMap total{
        {"type", "fraction"}, {"concentrationType", "volume"}, {"visibleSpectra", QStringList{"x", "a", "b"}}};
    const QVariantMap older{{"type", "fraction"},        {"totalConcentration", false}, {"concentration", "number"},
                            {"spectra", QVariantList{}}, {"fraction", "mobility"},      {"mobilitySmallerLimit", 0.5},
                            {"mobilityLargerLimit", 2}};
    QStringList errors;
    const QVariantList fields =
        plotFields(QVariantList{plot(total), plot(QVariantMap{{"type", "parameter"}}), plot(total, "spectrogram"), 7,
                                plot(storedFraction(DistributionScale::diameter, 1.25, 1e-5)),
                                plot(storedFraction(DistributionScale::mobility, 1e-4, 30)), plot(older)},
                   {"c", "b", "a"}, &errors);
    EXPECT_EQ(fields, (QVariantList{field("volume", {"b", "a", "x"}), field("surface", {"a"}, "1.25 1e-05", "diameter"),
                                    field("surface", {"a"}, "0.0001 30", "mobility"),
                                    field("number", {}, "0.5 2", "mobility")}));
    EXPECT_EQ(errors, QStringList());
}

TEST(PlotFields, AFractionWithoutTwoLimitsIsToldAndGivesNone)
{
    QVariantMap oneLimit = storedFraction(DistributionScale::diameter, 1, 10);
    oneLimit.remove("diameterLargerLimit");
    QStringList errors;
    EXPECT_EQ(plotFields(QVariantList{plot(oneLimit), plot(storedFraction(DistributionScale::diameter, 0, 10)),
                                      plot(storedFraction(DistributionScale::mobility, 0.1, 0))},
                         {}, &errors),
              QVariantList());
    EXPECT_EQ(errors.size(), 3);
    EXPECT_EQ(errors.value(1), "The fraction of plot 2 isn't bounded by two limits above 0: no field was added.");
    EXPECT_EQ(plotFields(QVariant(), {}, &errors), QVariantList());
}
