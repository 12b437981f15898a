#include "spectra/spectruminfo.h"

#include "spectra/unitparser.h"
#include "support/realvector.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace SpectMath;

constexpr double pi = 3.14159265358979323846;
const double inf = std::numeric_limits<double>::infinity();

SpectrumInfo mobilityInfo()
{
    SpectrumInfo info;
    info.name = "ions pos";
    info.concentrationUnit = parseUnit("1/cm^3", unitTable());
    info.mobilities = realVector({3.2, 1.9, 1.0, 0.51, 0.13, 0.04});
    info.finish();
    return info;
}

SpectrumInfo radiusInfo()
{
    SpectrumInfo info;
    info.name = "particles neg";
    info.scale = DistributionScale::radius;
    info.radii = realVector({0.4, 0.9, 2.0, 4.1, 9.7, 20.0});
    info.finish();
    return info;
}

TEST(MobilityModel, KnownPointsOfTheIteration)
{
    const SpectrumInfo info = [] {
        SpectrumInfo i;
        i.mobilities = realVector({1.0, 3.2, 0.0013, -1.0});
        i.finish();
        return i;
    }();
    EXPECT_NEAR(info.radii[0], 0.711172, 5e-7);
    EXPECT_NEAR(info.radii[1], 0.3977, 5e-5);
    EXPECT_NEAR(info.radii[2], 20.68, 5e-3);
    EXPECT_EQ(info.radii[3], -info.radii[0]);
}

TEST(MobilityModel, SpecialValuesAndRoundTrip)
{
    const MobilityModel model;
    EXPECT_EQ(radiusToMobility(model, 0.0), inf);
    EXPECT_TRUE(std::isnan(radiusToMobility(model, noValue)));
    EXPECT_TRUE(std::isnan(mobilityToRadius(model, 0.0)));
    EXPECT_TRUE(std::isnan(mobilityToRadius(model, noValue)));
    EXPECT_EQ(mobilityToRadius(model, -inf), 0.0);
    for (const double extreme : {1e308, -1e308, 5e-324, -5e-324}) { // all end
        const double radius = mobilityToRadius(model, extreme);
        EXPECT_FALSE(std::isnan(radius) && std::signbit(radius)) << extreme;
    }
    for (double r = 0.3e-9; r < 100e-9; r *= 1.3) {
        EXPECT_NEAR(mobilityToRadius(model, radiusToMobility(model, r)) / r, 1.0, 1.1e-3) << r;
        EXPECT_EQ(radiusToMobility(model, -r), -radiusToMobility(model, r));
        const double h = 1e-6;
        const double slope =
            std::log(radiusToMobility(model, r * (1 + h)) / radiusToMobility(model, r * (1 - h))) / (2 * h);
        EXPECT_NEAR(mobilitySlope(model, r) * model.mobilityScale, slope, 1e-6) << r;
    }
}

TEST(SpectrumInfo, HashIsMadeOfTheseBytes)
{
    const SpectrumInfo info = mobilityInfo();
    QByteArray bytes = info.name.toUtf8();
    const auto raw = [&bytes](const auto &value) {
        bytes.append(reinterpret_cast<const char *>(&value), int(sizeof(value)));
    };
    for (const double z : info.mobilities)
        raw(z);
    for (const double r : info.radii)
        raw(r);
    for (const Unit &unit : {info.mobilityUnit, info.sizeUnit, info.concentrationUnit}) {
        bytes += unit.name.toUtf8();
        const int before = bytes.size();
        raw(unit.multiplier);
        for (const std::int32_t e : unit.exponents)
            raw(e);
        ASSERT_EQ(bytes.size() - before, 36);
    }
    raw(std::int32_t(0)); // the mobility scale
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    EXPECT_EQ(info.hash.toStdString(), "P" + digest.toStdString());
    EXPECT_EQ(info.hash.length(), 41);

    SpectrumInfo other = info;
    other.hash.clear();
    other.name = "ions neg";
    other.finish();
    EXPECT_NE(other.hash, info.hash) << "the name is part of it";
    EXPECT_NE(other, info);
}

TEST(SpectrumInfo, FinishDerivesModeAndGroup)
{
    const struct {
        const char *name, *opmode, *group, *newOpmode, *newGroup;
    } cases[] = {
        {"ions pos", "", "", "ions", "pos"},    {"a b neg", "", "x", "a b", "neg"},
        {"plain", "", "x", "plain", ""}, // the group given without a mode goes
        {"ions pos", "mine", "x", "mine", "x"}, {"pos", "", "", "pos", ""},
    };
    for (const auto &c : cases) {
        SpectrumInfo info;
        info.name = c.name;
        info.opmode = c.opmode;
        info.electrometerGroup = c.group;
        info.hash = "kept";
        info.finish();
        EXPECT_EQ(info.opmode, c.newOpmode) << c.name;
        EXPECT_EQ(info.electrometerGroup, c.newGroup) << c.name;
        EXPECT_EQ(info.hash, "kept");
    }
}

TEST(SpectrumInfo, AxesAgree)
{
    for (const SpectrumInfo &info : {mobilityInfo(), radiusInfo()}) {
        const RealVector diameters = info.points(DistributionScale::diameter);
        for (std::size_t i = 0; i < info.radii.size(); ++i) {
            EXPECT_DOUBLE_EQ(diameters[i], 2 * info.radii[i]);
            EXPECT_NEAR(info.toNativeScale(diameters[i], DistributionScale::diameter) / info.nativePoints()[i], 1,
                        2e-3);
            EXPECT_NEAR(info.toNativeScale(info.radii[i], DistributionScale::radius) / info.nativePoints()[i], 1, 2e-3);
            EXPECT_NEAR(info.toNativeScale(info.mobilities[i], DistributionScale::mobility) / info.nativePoints()[i], 1,
                        2e-3);
        }
    }
    SpectrumInfo diameterInfo = radiusInfo();
    diameterInfo.scale = DistributionScale::diameter;
    EXPECT_EQ(diameterInfo.toNativeScale(3.0, DistributionScale::radius), 0.0);
    EXPECT_EQ(diameterInfo.toNativeScale(3.0, DistributionScale::diameter), 3.0);
}

/// The integral of the linearly interpolated density times nothing else, by many small steps over log10 of the axis.
double integral(const RealVector &grid, const RealVector &density, double from, double to)
{
    const int steps = 200000;
    double sum = 0;
    const double a = std::log10(std::min(from, to)), b = std::log10(std::max(from, to));
    for (int k = 0; k < steps; ++k) {
        const double x = a + (b - a) * (k + 0.5) / steps;
        for (std::size_t i = 0; i + 1 < grid.size(); ++i) {
            const double x0 = std::log10(grid[i]), x1 = std::log10(grid[i + 1]);
            if ((x - x0) * (x - x1) > 0)
                continue;
            const double t = (x - x0) / (x1 - x0);
            sum += (density[i] * (1 - t) + density[i + 1] * t) * (b - a) / steps;
            break;
        }
    }
    return sum;
}

TEST(SpectrumInfo, FractionWeightsIntegrateTheInterpolatedDensity)
{
    const RealVector density = realVector({3.0, 7.0, 1.0, 4.0, 9.0, 2.0});
    const auto at = [](const SpectrumInfo &info, double point) {
        return info.scale == DistributionScale::mobility
                   ? MobilitySize::fromMobility(info.model, point * 1e-4, info.model.mobilityUnit)
                   : MobilitySize::fromDiameter(info.model, 2 * point, Unit::nanometre);
    };
    const struct {
        bool mobility;
        double from, to;
    } cases[] = {
        {true, 2.5, 0.09}, {true, 1.5, 1.2},  {true, 0.09, 2.5}, // swapped limits mean the same
        {true, 50, 1.2},   {true, 1.9, 0.51}, {true, 1e-9, 1e-8}, {false, 0.5, 15},
        {false, 1.1, 1.3}, {false, 15, 0.5},  {false, 0.1, 3},    {false, 2.0, 4.1},
    };
    for (const auto &c : cases) {
        const SpectrumInfo info = c.mobility ? mobilityInfo() : radiusInfo();
        const RealVector w = info.fractionWeights(at(info, c.from), at(info, c.to), ConcentrationType::number);
        EXPECT_NEAR(inner_prod(w, density), integral(info.nativePoints(), density, c.from, c.to), 2e-4)
            << c.from << " to " << c.to;
        const RealVector volume = info.fractionWeights(at(info, c.from), at(info, c.to), ConcentrationType::volume);
        for (std::size_t i = 0; i < w.size(); ++i) {
            EXPECT_GE(w[i], 0.0);
            EXPECT_NEAR(volume[i], w[i] * 4.0 / 3.0 * pi * std::pow(info.radii[i], 3), 1e-12 * (1 + volume[i]));
        }
    }
}

TEST(SpectrumInfo, FractionWeightsOfOpenAndMissingLimits)
{
    for (const SpectrumInfo &info : {mobilityInfo(), radiusInfo()}) {
        const RealVector &grid = info.nativePoints();
        RealVector trapezoid(grid.size(), 0.0);
        for (std::size_t i = 0; i + 1 < grid.size(); ++i) {
            const double half = std::fabs(std::log10(grid[i + 1] / grid[i])) / 2;
            trapezoid[i] += half;
            trapezoid[i + 1] += half;
        }
        const auto limit = [&info](double d) { return MobilitySize::fromDiameter(info.model, d, Unit::nanometre); };
        const auto expectWhole = [&](double low, double high) {
            const RealVector w = info.fractionWeights(limit(low), limit(high), ConcentrationType::number);
            for (std::size_t i = 0; i < w.size(); ++i)
                EXPECT_NEAR(w[i], trapezoid[i], 1e-12) << low << " " << high << " " << i;
        };
        expectWhole(0.0, inf);
        expectWhole(noValue, noValue);
        expectWhole(noValue, inf);
        expectWhole(0.0, noValue);
        // A missing limit stands for its own end only.
        const double middle = 2 * info.radii[3];
        const RealVector below = info.fractionWeights(limit(noValue), limit(middle), ConcentrationType::number);
        const RealVector above = info.fractionWeights(limit(middle), limit(noValue), ConcentrationType::number);
        EXPECT_GT(below[0], 0.0);
        EXPECT_NEAR(below[5], 0.0, 1e-12);
        EXPECT_GT(above[5], 0.0);
        EXPECT_NEAR(above[0], 0.0, 1e-12);
        EXPECT_NEAR(sum(below) + sum(above), sum(trapezoid), 1e-3) << "0.1 % off in the axis conversion";
    }
    SpectrumInfo single;
    single.mobilities = realVector({1.0});
    single.finish();
    const MobilitySize all = MobilitySize::fromDiameter(single.model, 0.0, Unit::nanometre);
    EXPECT_EQ(single.fractionWeights(all, all, ConcentrationType::volume).size(), 1u);
}

TEST(SpectrumInfo, OrderLabelAndWords)
{
    SpectrumInfo a, b;
    a.name = "a";
    b.name = "b";
    a.inverterName = "z";
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    b.name = "a";
    EXPECT_TRUE(b < a) << "the inverter's name decides";
    b.inverterName = "z";
    b.hash = "P1";
    EXPECT_TRUE(a < b);
    EXPECT_EQ(a.displayLabel(), "a (z)");
    b.inverterName.clear();
    b.hash = "P12345";
    b.name = "50 %2";
    EXPECT_EQ(b.displayLabel(), "50 %2 (P123)");
    a = b;
    a.comment = "other";
    a.inverterName = "other";
    EXPECT_EQ(a, b);

    bool ok = false;
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(int(concentrationTypeFromText(toText(ConcentrationType(i)), ConcentrationType::number, &ok)), i);
    EXPECT_TRUE(ok);
    EXPECT_EQ(distributionScaleFromText("Radius", DistributionScale::diameter, &ok), DistributionScale::diameter);
    EXPECT_FALSE(ok);
    EXPECT_EQ(toText(DistributionType::fraction), "fraction");
    const Unit surface = mobilityInfo().concentrationUnitOf(ConcentrationType::surface);
    EXPECT_EQ(surface.name, "nm^2*1/cm^3");
    EXPECT_NEAR(surface.multiplier, 1e-12, 1e-24);
}

} // namespace
