#include "demo/atmosphere.h"
#include "demo/instrument.h"
#include "gui/common/recordviews/distribution/distributionsummary.h"
#include "gui/common/recordviews/distribution/distributiontext.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace RecordViews;
using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::DistributionType;

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

/// Units as an instrument gives them.
SpectMath::SpectrumInfoPointer info(const std::vector<double> &grid,
                                    DistributionScale scale = DistributionScale::radius)
{
    auto made = std::make_shared<SpectMath::SpectrumInfo>(*testInfo("particles neg", grid, scale, "a"));
    made->concentrationUnit = Unit("1/cm^3", 1e6, {-3, 0, 0, 0, 0, 0, 0});
    return made;
}

SpectMath::Spectrum spectrum(const SpectMath::SpectrumInfoPointer &info, const RealVector &values,
                             const RealVector &variances)
{
    SpectMath::Spectrum made;
    made.info = info;
    made.status = 0;
    made.concentrations = values;
    made.covariances = BandMatrix(variances.size(), variances.size(), 0, 0);
    for (std::size_t i = 0; i < variances.size(); ++i)
        made.covariances(i, i) = variances[i];
    return made;
}

/// The demonstration's aerosol of one moment, as it is and not as it was measured, with errors of a tenth.
SpectMath::Spectrum demoTruth(int points = 60)
{
    const RealVector radii = Demo::logarithmicGrid(0.7, 30, points);
    const Demo::Axis axis(Demo::Mode::Particles, Demo::Polarity::Negative, radii);
    const RealVector densities = Demo::Atmosphere(1).aerosolAt(0.6).densities(axis);
    RealVector variances(densities.size());
    for (std::size_t i = 0; i < densities.size(); ++i)
        variances[i] = densities[i] * densities[i] / 100;
    return spectrum(info({radii.begin(), radii.end()}), densities, variances);
}

DistributionValues valuesOf(const SpectMath::Spectrum &spectrum, const PlotOptions &options)
{
    DisplaySmoothing smoothing;
    return distributionValues(spectrum, options, shownAxis(*spectrum.info, options), smoothing);
}

void expectValues(const RealVector &values, const std::vector<double> &expected, const char *what)
{
    ASSERT_EQ(values.size(), expected.size()) << what;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(expected[i]))
            EXPECT_TRUE(std::isnan(values[i])) << what << i;
        else
            EXPECT_NEAR(values[i], expected[i], 1e-12 * std::abs(expected[i])) << what << i;
    }
}

PlotOptions logOptions(DistributionType type)
{
    PlotOptions options;
    options.verticalScaleLog = true;
    options.distributionType = type;
    return options;
}

} // namespace

TEST(DistributionValues, AreTheDemosTruthInEveryQuantity)
{
    const SpectMath::Spectrum truth = demoTruth();
    const Demo::Aerosol air = Demo::Atmosphere(1).aerosolAt(0.6);
    const RealVector &radii = truth.info->radii;
    const struct {
        ConcentrationType type;
        double (*moment)(double r);
        const char *unit;
    } quantities[] = {
        {ConcentrationType::number, [](double) { return 1.0; }, "1/cm^3"},
        {ConcentrationType::diameter, [](double r) { return 2 * r; }, "nm*1/cm^3"},
        {ConcentrationType::surface, [](double r) { return 4 * M_PI * r * r; }, "nm^2*1/cm^3"},
        {ConcentrationType::volume, [](double r) { return 4.0 / 3 * M_PI * r * r * r; }, "nm^3*1/cm^3"},
    };
    const auto density = [&](double r) {
        double sum = 0;
        for (const Demo::LognormalMode &mode : air.particles)
            sum += mode.density(2 * r);
        return sum;
    };
    for (const auto &quantity : quantities) {
        PlotOptions options;
        options.verticalQuantity = quantity.type;
        const DistributionValues shown = valuesOf(truth, options);
        ASSERT_EQ(shown.size(), radii.size());
        for (std::size_t i = 0; i < radii.size(); ++i) {
            const double expected = quantity.moment(radii[i]) * density(radii[i]);
            EXPECT_EQ(shown.grid[i], 2 * radii[i]) << "a radius is shown as a diameter";
            EXPECT_NEAR(shown.values[i], expected, 1e-9 * expected + 1e-9);
            EXPECT_NEAR(shown.uncertainties[i], expected / 10, 1e-9 * expected + 1e-9);
        }
        EXPECT_EQ(verticalTitle(*truth.info, options, DistributionScale::diameter),
                  QString("dn/dlogD (%1)").arg(quantity.unit));

        options.distributionType = DistributionType::fraction;
        const DistributionValues bars = valuesOf(truth, options);
        ASSERT_EQ(bars.size(), radii.size() - 1);
        EXPECT_EQ(bars.grid.size(), radii.size());
        for (std::size_t i = 0; i + 1 < radii.size(); ++i) {
            const double width = std::log10(radii[i + 1] / radii[i]);
            const double expected = quantity.moment(std::sqrt(radii[i] * radii[i + 1])) * width *
                                    (density(radii[i]) + density(radii[i + 1])) / 2;
            EXPECT_NEAR(bars.values[i], expected, 1e-9 * expected + 1e-9);
        }
        EXPECT_EQ(verticalTitle(*truth.info, options, DistributionScale::mobility),
                  QString("n (%1)").arg(quantity.unit));
    }
}

TEST(DistributionValues, AxisAndItsTitleFollowTheOptions)
{
    const auto mobilityInfo = info({2, 1, 0.5}, DistributionScale::mobility), radiusInfo = info({1, 2, 3});
    PlotOptions automatic, mobility, radius;
    mobility.horizontalQuantityAuto = radius.horizontalQuantityAuto = false;
    mobility.horizontalQuantity = DistributionScale::mobility;
    radius.horizontalQuantity = DistributionScale::radius;
    const struct {
        const SpectMath::SpectrumInfo &info;
        const PlotOptions &options;
        const char *horizontal, *vertical;
    } cases[] = {
        {*mobilityInfo, automatic, "mobility (cm^2/s/V)", "dn/dlogZ (1/cm^3)"},
        {*mobilityInfo, radius, "diameter (nm)", "dn/dlogD (1/cm^3)"},
        {*radiusInfo, automatic, "diameter (nm)", "dn/dlogD (1/cm^3)"},
        {*radiusInfo, mobility, "mobility (cm^2/s/V)", "dn/dlogZ (1/cm^3)"},
    };
    for (const auto &c : cases) {
        const DistributionScale axis = shownAxis(c.info, c.options);
        EXPECT_EQ(horizontalTitle(c.info, axis), c.horizontal);
        EXPECT_EQ(verticalTitle(c.info, c.options, axis), c.vertical);
    }
}

TEST(DistributionValues, SmoothingIsTheMatrixTimesTheValuesAndLeavesTheUncertainties)
{
    const auto three = spectrum(info({1, 2, 3}), realVector({0, 9, 0}), realVector({1, 4, 9}));
    PlotOptions options;
    options.smoothingCoef = 1; // the raised cosine 1/4, 1/2, 1/4
    const DistributionValues shown = valuesOf(three, options);
    expectValues(shown.values, {2.25, 4.5, 2.25}, "values ");
    expectValues(shown.uncertainties, {1, 2, 3}, "uncertainties ");

    DisplaySmoothing smoothing;
    const RealMatrix *first = &smoothing.matrix(3, 1);
    smoothing.matrix(5, 1);
    EXPECT_EQ(&smoothing.matrix(3, 1), first) << "another number of points throws no matrix away";
    EXPECT_EQ(smoothing.matrix(3, 2)(0, 0), SpectMath::smoothingWindowMatrix(3, 2)(0, 0));
    auto endless = three;
    endless.info = info(testGrid(5000, 1, 1.001));
    endless.concentrations = RealVector(5000, 1.0);
    EXPECT_EQ(smoothing.smoothed(endless, 1e6).status, 0) << "no matrix of 200 MB";
}

TEST(DistributionValues, OfWhatDoesntFitAreEmptyOrClipped)
{
    const auto sound = spectrum(info({1, 2, 3}), realVector({1, 2, 3}), realVector({1, 1, 1}));
    const auto sizeOf = [](const SpectMath::Spectrum &spectrum, DistributionType type) {
        PlotOptions options;
        options.distributionType = type;
        options.verticalQuantity = ConcentrationType::surface;
        DisplaySmoothing smoothing;
        const auto values = distributionValues(spectrum, options, DistributionScale::mobility, smoothing);
        EXPECT_LE(values.uncertainties.size(), values.grid.size());
        return values.size();
    };
    const struct {
        const char *name;
        void (*damage)(SpectMath::Spectrum &);
        std::size_t density, fraction;
    } cases[] = {
        {"sound", [](SpectMath::Spectrum &) {}, 3, 2},
        {"no description", [](SpectMath::Spectrum &s) { s.info.reset(); }, 0, 0},
        {"failed", [](SpectMath::Spectrum &s) { s.status = 2; }, 0, 0},
        {"too few values", [](SpectMath::Spectrum &s) { s.concentrations.resize(2); }, 0, 0},
        {"no values", [](SpectMath::Spectrum &s) { s.concentrations.resize(0); }, 0, 0},
        {"too few covariances", [](SpectMath::Spectrum &s) { s.covariances.resize(1, 1, 0, 0, false); }, 0, 0},
        {"a short axis",
         [](SpectMath::Spectrum &s) {
             auto damaged = std::make_shared<SpectMath::SpectrumInfo>(*s.info);
             damaged->mobilities.resize(2);
             s.info = damaged;
         },
         2, 1},
        {"one point", [](SpectMath::Spectrum &s) { s = spectrum(info({1}), realVector({1}), realVector({1})); }, 1, 0},
        {"no point", [](SpectMath::Spectrum &s) { s = spectrum(info({}), {}, {}); }, 0, 0},
    };
    for (const auto &c : cases) {
        SpectMath::Spectrum damaged = sound;
        c.damage(damaged);
        EXPECT_EQ(sizeOf(damaged, DistributionType::density), c.density) << c.name;
        EXPECT_EQ(sizeOf(damaged, DistributionType::fraction), c.fraction) << c.name;
    }
}

TEST(DistributionValues, WhatALogAxisCantShowIsAGapOrASmallBar)
{
    const DistributionValues values{realVector({6, 5, 4, 3, 2, 1, 0.5}),
                                    realVector({5, 0.001, 0.0005, 0, -3, none, inf}),
                                    realVector({1, 1, 1, 1, 1, 1, 0})};
    const DistributionValues density = drawnValues(values, logOptions(DistributionType::density));
    expectValues(density.grid, {0.5, 1, 2, 3, 4, 5, 6}, "ascending ");
    expectValues(density.values, {none, none, none, none, none, 0.001, 5}, "density ");
    expectValues(density.uncertainties, {none, 1, 1, 1, 1, 1, 1}, "uncertainty ");
    const DistributionValues bars =
        drawnValues({realVector({1, 2, 3, 4}), realVector({5, 0.0005, -1}), realVector({1, 1, 0})},
                    logOptions(DistributionType::fraction));
    expectValues(bars.values, {5, 2.220446049250313e-16, 2.220446049250313e-16}, "bar ");
    const DistributionValues linear = drawnValues(values, {});
    expectValues(linear.values, {none, none, -3, 0, 0.0005, 0.001, 5}, "linear ");
    expectValues(drawnValues({realVector({-1, 0, 2}), realVector({1, 1, 1}), realVector({0, 0, 0})}, {}).grid,
                 {none, none, 2}, "points that a logarithmic axis can't have ");
}

TEST(DistributionExtents, RunOverWhatIsDrawn)
{
    const DistributionValues values{realVector({1, 2, 4}), realVector({10, 1, 5}), realVector({0.1, 100, 1})};
    const auto extentsOf = [](const DistributionValues &of, bool isLog) {
        DistributionExtents extents;
        extents.include(of, isLog);
        return extents;
    };
    EXPECT_EQ(extentsOf(values, false).vertical.least, 1);
    EXPECT_EQ(extentsOf(values, false).vertical.greatest, 10) << "the values alone";
    EXPECT_EQ(extentsOf(values, true).vertical.least, 0.1);
    EXPECT_EQ(extentsOf(values, true).vertical.greatest, 100);
    EXPECT_EQ(extentsOf(values, true).horizontal.least, 1);
    EXPECT_EQ(extentsOf(values, true).horizontal.greatest, 4);
    EXPECT_FALSE(extentsOf({realVector({1, 2}), realVector({1, 1}), realVector({1, 1})}, false).horizontal.isKnown())
        << "of two points only";
    const RealVector missing = realVector({none, none, none});
    DistributionExtents merged = extentsOf({missing, missing, missing}, true);
    EXPECT_FALSE(merged.horizontal.isKnown() || merged.vertical.isKnown());
    merged.include(values, true);
    EXPECT_EQ(merged.vertical.greatest, 100) << "what isn't known is replaced by what is";
    merged.include({realVector({1, 2, 8}), realVector({smallBar, 1}), realVector({1, 1})}, true);
    EXPECT_EQ(merged.vertical.least, 0.1) << "without small bars";
    EXPECT_EQ(merged.horizontal.greatest, 8);
    merged.vertical.include(1e-100);
    EXPECT_DOUBLE_EQ(limitedToDecades(merged.vertical).least, 100 / 1e8);
}

TEST(DistributionSummary, IsTheLognormalThatTheDemoMade)
{
    const Demo::LognormalMode mode{1234, 8, 0.2};
    for (DistributionScale scale : {DistributionScale::radius, DistributionScale::mobility}) {
        const RealVector points = Demo::logarithmicGrid(0.4, 100, 400);
        auto curve = info({points.begin(), points.end()}, DistributionScale::radius);
        RealVector densities(points.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            densities[i] = mode.density(2 * points[i]);
        if (scale == DistributionScale::mobility) { // the same air over another axis
            auto other = std::make_shared<SpectMath::SpectrumInfo>(*curve);
            other->scale = scale;
            for (std::size_t i = 0; i < points.size(); ++i)
                densities[i] /= Demo::mobilitySlopeAt(2 * points[i]);
            curve = other;
        }
        const auto summary = distributionSummary(spectrum(curve, densities, densities));
        EXPECT_NEAR(summary.total, 1234, 1) << int(scale);
        EXPECT_NEAR(summary.geometricMean, 8, 0.02) << int(scale);
        EXPECT_NEAR(summary.geometricDeviation, std::pow(10, 0.2), 0.005) << int(scale);
        EXPECT_NEAR(summary.mode, 8, scale == DistributionScale::radius ? 0.1 : 0.5) << int(scale);
    }
    const auto line = [](const RealVector &values) {
        const auto one = spectrum(info({1, 10, 100}), values, values);
        return summaryText(distributionSummary(one), *one.info, "a");
    };
    EXPECT_EQ(line(realVector({0, 100, 0})), "a: total 100 1/cm^3, GMD 20 nm, GSD 1, mode 20 nm");
    EXPECT_EQ(line(realVector({0, -2, 0})), "a: total -2 1/cm^3, GMD ? nm, GSD ?, mode ? nm");
    EXPECT_EQ(line(realVector({0, none, 0})), "a: no values");
    EXPECT_EQ(line(realVector({0, 1})), "a: no values");
}

TEST(DistributionText, IsThreeLinesOfASpreadsheet)
{
    const auto one = spectrum(info({1, 10, 100}), realVector({1234567, 0.5, none}), realVector({1, 4, 9}));
    const auto textOf = [](const SpectMath::Spectrum &of, PlotOptions options) {
        DisplaySmoothing smoothing;
        options.verticalScaleLog = true; // changes nothing here
        return spectrumText(of, options, DistributionScale::diameter, smoothing);
    };
    PlotOptions options;
    EXPECT_EQ(textOf(one, options), "diameter (nm)\t2\t20\t200\n"
                                    "number concentration density (1/cm^3)\t1.23457e+06\t0.5\tnan\n"
                                    "uncertainty (1/cm^3)\t1\t2\t3");
    options.distributionType = DistributionType::fraction;
    options.verticalQuantity = ConcentrationType::diameter;
    EXPECT_EQ(textOf(spectrum(one.info, realVector({1, 3, 5}), realVector({0, 0, 4})), options),
              "diameter bins (nm)\t2\t20\t200\n"
              "fraction diameter concentration (nm*1/cm^3)\t12.6491\t252.982\n"
              "uncertainty (nm*1/cm^3)\t0\t63.2456");
    auto failed = one;
    failed.status = 3;
    EXPECT_EQ(textOf(failed, options), "# Inversion failed\n");

    Spectrometer::RecordHead head;
    head.beginTime = recordTimeFromTicks(91 * ticksPerDay + 3661 * ticksPerSecond);
    head.beginUtcOffset = 3600;
    EXPECT_EQ(recordTimeText(head), "02. April 1970 02:01:01");
    head.endTime = head.beginTime + Ticks(60 * ticksPerSecond);
    head.endUtcOffset = 7200;
    EXPECT_EQ(recordTimeText(head), "02. April 1970 02:01:01 - 03:02:01");
}

TEST(PlotOptions, TakeWhatMakesSenseAndLeaveTheRest)
{
    PlotOptions stored;
    stored.distributionType = DistributionType::fraction;
    stored.verticalScaleLog = true;
    stored.horizontalQuantityAuto = false;
    stored.horizontalQuantity = DistributionScale::mobility;
    stored.verticalQuantity = ConcentrationType::volume;
    stored.smoothingCoef = 2.5;
    const QVariantMap map = stored.toMap();
    EXPECT_EQ(map, (QVariantMap{{"distribution_type", "fraction"},
                                {"vertical_scale_log", true},
                                {"horizontal_quantity_auto", false},
                                {"horizontal_quantity", "mobility"},
                                {"vertical_quantity", "volume"},
                                {"smoothing_coef", 2.5}}));
    PlotOptions read;
    read.takeFrom(map);
    EXPECT_EQ(read.toMap(), map);
    for (const QVariant &nonsense : {QVariant(), QVariant("radius x"), QVariant(QVariantList{1}), QVariant(none)}) {
        QVariantMap bad;
        for (const QString &key : map.keys())
            bad[key] = nonsense;
        read.takeFrom(bad);
        EXPECT_EQ(read.toMap(), map) << qPrintable(nonsense.toString());
    }
    read.takeFrom({{"vertical_quantity", "radius"}, {"smoothing_coef", -1}});
    EXPECT_EQ(read.toMap(), map);
}
