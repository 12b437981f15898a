#include "dataexport/exportfixture.h"
#include "dataexport/fractions.h"
#include "dataexport/spectrumfieldsource.h"
#include "demo/campaign.h"

#include <gmock/gmock.h>

using namespace DataExport;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pair;

namespace {

constexpr double pi = 3.14159265358979;

/// The value of a quantity at one particle, from its radius in nm: 4 pi r^2 and so on, a mass in mg at 2 g/cm^3.
double ofParticle(const QString &type, double r)
{
    if (type == "mass")
        return 4 * pi / 3 * std::pow(r * 1e-7, 3) * 2 * 1000;
    return type == "number"     ? 1
           : type == "radius"   ? r
           : type == "diameter" ? 2 * r
           : type == "surface"  ? 4 * pi * r * r
                                : 4 * pi / 3 * r * r * r;
}

/// The integral over the logarithm of an axis, by the middles of very many steps, of what is linear between points.
double plainIntegral(std::vector<std::pair<double, double>> points, double from, double to)
{
    std::sort(points.begin(), points.end());
    constexpr int steps = 40'000;
    const double low = std::log10(std::max(from, points.front().first));
    const double high = std::log10(std::min(to, points.back().first));
    double sum = 0;
    for (int i = 0; i < steps; ++i) {
        const double x = low + (high - low) * (i + 0.5) / steps;
        std::size_t k = 1;
        while (k + 1 < points.size() && std::log10(points[k].first) < x)
            ++k;
        const double x0 = std::log10(points[k - 1].first), x1 = std::log10(points[k].first);
        sum += points[k - 1].second + (points[k].second - points[k - 1].second) * (x - x0) / (x1 - x0);
    }
    return sum * (high - low) / steps;
}

struct Integrated {
    DistributionScale native;
    const char *type;
};

class Integrals : public ::testing::TestWithParam<Integrated> {};

} // namespace

TEST(DecadeFractions, AreCutAtTheGridAndDropNarrowPieces)
{
    const std::vector<double> hundred{1, 10, 100}, falling{3, 1, 0.95};
    const double root = std::sqrt(10);
    const struct {
        std::vector<double> grid;
        DecadeFractions fractions;
        std::vector<Limits> pieces;
    } table[] = {
        {hundred, {true, {}, false, 1, 1, 1}, {{1, 10}, {10, 100}}},
        {hundred, {true, {}, false, 1, 1, 2}, {{1, root}, {root, 10}, {10, 10 * root}, {10 * root, 100}}},
        // 0.95 to 1 is narrower than a quarter of a decade, but not than that of a tenth of one.
        {falling, {true, {}, false, 1, 1, 1}, {{1, 3}}},
        {falling, {true, {}, true, 0.1, 1.0, 20}, {{0.95, 1}}},
        {hundred, {true, {}, true, 5, 40, 1}, {{5, 50}}}, // not cut at 40
        {hundred, {true, {}, true, 0.001, 1e300, 1}, {{1, 10}, {10, 100}}},
        {hundred, {true, {}, true, 200, 1000, 1}, {}},
        {hundred, {true, {}, true, 40, 5, 1}, {}},
        {{5}, {true, {}, false, 1, 1, 1}, {}},
        {{0, 1, 10}, {true, {}, false, 1, 1, 1}, {}},
        {{1, noValue}, {true, {}, true, 1, 10, 1}, {}},
        {hundred, {true, {}, false, 1, 1, 0}, {}},
        {hundred, {true, {}, false, 1, 1, 1'000'000'000}, {}},
    };
    for (const auto &row : table) {
        const auto pieces = row.fractions.pieces(row.grid);
        ASSERT_EQ(pieces.size(), row.pieces.size()) << &row - table;
        for (std::size_t i = 0; i < pieces.size(); ++i)
            EXPECT_THAT(pieces[i], Pair(DoubleNear(row.pieces[i].first, 1e-9), DoubleNear(row.pieces[i].second, 1e-9)))
                << &row - table;
    }
}

TEST(DecadeFractions, LimitsAreInNanometresWhateverUnitTheGridHas)
{
    auto info = *infoPerCm3("ions", {1e-9, 2e-9}, DistributionScale::radius);
    info.sizeUnit = Unit::metre;
    const auto grid = gridIn(info, DistributionScale::diameter);
    EXPECT_THAT(grid, ElementsAre(DoubleNear(2, 1e-9), DoubleNear(4, 1e-9)));
}

/// Totals and fractions, on both axes and outside of the grid, against plain integration.
TEST_P(Integrals, AgreeWithPlainIntegration)
{
    const bool isMobility = GetParam().native == DistributionScale::mobility;
    const auto info =
        infoPerCm3("ions", isMobility ? testGrid(14, 0.02, 1.4) : testGrid(14, 0.6, 1.4), GetParam().native);
    const std::vector<double> values{1, 3, 2, 8, 20, 13, 9, 6, 8, 7, 2, 1, 0, 5};
    std::vector<std::pair<double, double>> points;
    for (std::size_t i = 0; i < values.size(); ++i)
        points.emplace_back(info->nativePoints()[i], values[i] * ofParticle(GetParam().type, info->radii[i]));

    // Limits of diameter are told as radii to a radius grid, as mobilities, which fall, to the other.
    const auto native = [&](double limit, bool ofMobility) {
        if (ofMobility)
            return isMobility ? limit : 1e9 * SpectMath::mobilityToRadius(info->model, limit * 1e-4);
        return isMobility ? 1e4 * SpectMath::radiusToMobility(info->model, limit / 2 * 1e-9) : limit / 2;
    };
    for (const bool ofMobility : {false, true}) {
        const QString limits = ofMobility ? "0.03 0.1 0.2 1e3" : "1.3 2 2.1 7 1e3";
        auto table = tableOf({QVariantMap{{"type", "concentration"},
                                          {"spectra", QVariantList{"id-ions"}},
                                          {"concentration_type", GetParam().type},
                                          {"material_density", 2.0},
                                          {"custom_fractions_enabled", true},
                                          {"custom_fractions_data", limits},
                                          {"custom_fractions_scale", ofMobility ? "mobility" : "diameter"}}},
                             exportData({info}));
        Record record;
        record.spectra = {spectrumOf(info, values, 0.25)};
        const QStringList fields = fieldsOf(table, record);
        QStringList words = limits.split(' ');
        ASSERT_EQ(fields.size(), 2 * words.size());
        const double total = plainIntegral(points, 0, 1e300);
        EXPECT_NEAR(fields[0].toDouble() / total, 1, 1e-5);
        for (int i = 1; i < words.size(); ++i) {
            const double a = native(words[i - 1].toDouble(), ofMobility), b = native(words[i].toDouble(), ofMobility);
            const double plain = plainIntegral(points, std::min(a, b), std::max(a, b));
            EXPECT_NEAR(fields[2 * i].toDouble(), plain, 2e-4 * total) << qPrintable(words[i]) << ofMobility;
        }
        // All deviations are 0.5, and add up linearly: those of a number are half the width of the axis.
        const double width = std::fabs(std::log10(points.back().first / points.front().first));
        if (GetParam().type == QLatin1String("number")) {
            EXPECT_NEAR(fields[1].toDouble(), width / 2, 1e-5);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Types, Integrals,
    ::testing::Values(
        Integrated{DistributionScale::radius, "number"}, Integrated{DistributionScale::radius, "radius"},
        Integrated{DistributionScale::radius, "diameter"}, Integrated{DistributionScale::radius, "surface"},
        Integrated{DistributionScale::radius, "volume"}, Integrated{DistributionScale::radius, "mass"},
        Integrated{DistributionScale::mobility, "number"}, Integrated{DistributionScale::mobility, "radius"},
        Integrated{DistributionScale::mobility, "diameter"}, Integrated{DistributionScale::mobility, "surface"},
        Integrated{DistributionScale::mobility, "volume"}, Integrated{DistributionScale::mobility, "mass"}));

/// The made-up atmosphere's own distributions, during its event, on a grid that is finer than an instrument's.
TEST(DemoTruth, FractionsAreItsIntegrals)
{
    const Demo::Campaign campaign{Demo::Campaign::Settings()};
    const struct {
        Demo::Mode mode;
        const char *type;
        std::vector<double> limits; // on the native axis: mobility, or radius
    } table[] = {{Demo::Mode::Ions, "number", {0.1, 0.5, 1, 2}},
                 {Demo::Mode::Ions, "diameter", {0.1, 0.5, 1, 2}},
                 {Demo::Mode::Particles, "number", {2, 4, 8, 15}},
                 {Demo::Mode::Particles, "mass", {2, 4, 8, 15}}};
    const double afternoon = 13.5 / 24;
    for (const auto &row : table) {
        const bool isMobility = row.mode == Demo::Mode::Ions;
        const RealVector grid = isMobility ? Demo::logarithmicGrid(0.01, 4, 400) : Demo::logarithmicGrid(1, 25, 400);
        const auto info = infoPerCm3("demo", std::vector<double>(grid.begin(), grid.end()),
                                     isMobility ? DistributionScale::mobility : DistributionScale::radius);
        const auto truth = [&](const RealVector &points) {
            return campaign.truth(row.mode, Demo::Polarity::Negative, points, afternoon);
        };
        QStringList words;
        for (const double limit : row.limits)
            words << QString::number(isMobility ? limit : 2 * limit);
        auto exported = tableOf({QVariantMap{{"type", "concentration"},
                                             {"spectra", QVariantList{info->hash}},
                                             {"concentration_type", row.type},
                                             {"material_density", 2.0},
                                             {"total_concentration_enabled", false},
                                             {"custom_fractions_enabled", true},
                                             {"custom_fractions_data", words.join(' ')},
                                             {"custom_fractions_scale", isMobility ? "mobility" : "diameter"}}},
                                exportData({info}));
        const RealVector onGrid = truth(info->nativePoints());
        Record record;
        record.spectra = {spectrumOf(info, std::vector<double>(onGrid.begin(), onGrid.end()))};
        const QStringList fields = fieldsOf(exported, record);
        ASSERT_EQ(fields.size(), 6);
        for (std::size_t i = 0; i + 1 < row.limits.size(); ++i) {
            const RealVector fine = Demo::logarithmicGrid(row.limits[i], row.limits[i + 1], 400);
            const RealVector densities = truth(fine);
            std::vector<std::pair<double, double>> points;
            for (std::size_t k = 0; k < fine.size(); ++k) {
                const double radius =
                    isMobility ? 1e9 * SpectMath::mobilityToRadius(info->model, fine[k] * 1e-4) : fine[k];
                points.emplace_back(fine[k], densities[k] * ofParticle(row.type, radius));
            }
            const double plain = plainIntegral(points, row.limits[i], row.limits[i + 1]);
            EXPECT_NEAR(fields[2 * int(i)].toDouble() / plain, 1, 0.003) << row.type << words[int(i)].toStdString();
        }
    }
}

/// The least mobilities are 0 in the model's unit: their fraction was the whole grid.
TEST(FractionWeights, BeyondTheGridAreZero)
{
    for (const auto native : {DistributionScale::mobility, DistributionScale::radius}) {
        const auto info = infoPerCm3("ions", {1, 10}, native);
        for (const auto scale : {DistributionScale::mobility, DistributionScale::diameter}) {
            for (const Limits &limits : {Limits(1e-320, 1e-300), Limits(1e300, 1e308)}) {
                const RealVector weights = weightsBetween(*info, limits, scale, SpectMath::ConcentrationType::number);
                EXPECT_THAT(weights, ElementsAre(0, 0)) << limits.first << int(scale) << int(native);
            }
        }
    }
}

TEST(SpectrumDensity, OfTheOtherAxisIsThatOfItsDecades)
{
    // A mobility's radius is known to a thousandth, the slope changes by a hundredth between the points.
    for (const auto scale : {DistributionScale::mobility, DistributionScale::radius}) {
        const bool isMobility = scale == DistributionScale::mobility;
        const auto info = infoPerCm3("ions", {0.5, 0.6}, scale);
        const double decades = std::fabs(std::log10(info->mobilities[1] / info->mobilities[0]) /
                                         std::log10(info->radii[1] / info->radii[0]));
        const auto other = isMobility ? DistributionScale::diameter : DistributionScale::mobility;
        EXPECT_NEAR(densityFactor(*info, info->radii[0], other), isMobility ? decades : 1 / decades, 0.02);
        EXPECT_EQ(densityFactor(*info, info->radii[0], scale), 1);
    }
}
