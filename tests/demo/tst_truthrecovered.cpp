#include "demo/campaign.h"

#include "spectra/recordinversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

using Demo::Campaign;
using Demo::Mode;
using Demo::Polarity;

namespace {

constexpr double eventBegin = 11.5; // hours
constexpr double eventEnd = 20;
constexpr double modeBegin = 3; // nm, where the growing mode is looked for
constexpr double modeEnd = 40;
constexpr int finePoints = 4001;

/// The axis between the ends of a spectrum's grid, fine enough to integrate on it.
RealVector fineAxis(const SpectMath::SpectrumInfo &info)
{
    const RealVector &points = info.nativePoints();
    return Demo::logarithmicGrid(points[0], points[points.size() - 1], finePoints);
}

/// The integral of a density over log10 of evenly spaced points.
double integral(const RealVector &density, const RealVector &points)
{
    double sum = 0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        sum += (density[i] + density[i + 1]) / 2 * std::fabs(std::log10(points[i + 1] / points[i]));
    return sum;
}

/// The diameter of the greatest density of particles among the radii between the ends of the mode's way.
double growingMode(const RealVector &density, const RealVector &radii)
{
    double greatest = -1, diameter = 0;
    for (std::size_t i = 0; i < radii.size(); ++i) {
        if (2 * radii[i] < modeBegin || 2 * radii[i] > modeEnd || density[i] <= greatest)
            continue;
        greatest = density[i];
        diameter = 2 * radii[i];
    }
    return diameter;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

class TruthRecovered : public ::testing::TestWithParam<unsigned> {
protected:
    TruthRecovered() : campaign(settings())
    {
        for (const auto &file : campaign.inverterFiles())
            inverters.push_back(file.inverter);
    }

    static Campaign::Settings settings()
    {
        Campaign::Settings settings;
        settings.seed = GetParam();
        return settings;
    }

    /// Calls back with each spectrum of the event's records, inverted from what the record holds.
    template<typename Judge>
    void invertEvent(Judge judge)
    {
        for (int slot = 0; slot < campaign.slotCount(); ++slot) {
            const double hour = 24 * campaign.dayOf(slot);
            const auto record = hour < eventBegin || hour >= eventEnd ? nullptr : campaign.record(slot);
            if (!record || Campaign::modeOf(slot) == Mode::Offset)
                continue;
            const auto fail = [](int, const QString &text) { ADD_FAILURE() << qPrintable(text); };
            const auto result = SpectMath::invertRecord(inverters, *record, *campaign.metadata(), fail);
            ASSERT_EQ(result->spectra.size(), 2u);
            judge(slot, Polarity::Negative, *result->spectra[0]);
            judge(slot, Polarity::Positive, *result->spectra[1]);
        }
    }

    Campaign campaign;
    SpectMath::InverterList inverters;
};

} // namespace

TEST_P(TruthRecovered, TotalsOfTheEvent)
{
    struct Count {
        int all = 0, withinUncertainty = 0, withinTenPercent = 0;
    };
    std::map<int, Count> counts; // by mode and polarity
    invertEvent([&](int slot, Polarity polarity, const SpectMath::Spectrum &spectrum) {
        ASSERT_EQ(spectrum.status, 0);
        const Mode mode = Campaign::modeOf(slot);
        const RealVector points = fineAxis(*spectrum.info);
        const double truth = integral(campaign.truth(mode, polarity, points, campaign.dayOf(slot)), points);
        RealVector fractions, uncertainties;
        spectrum.getFractions(fractions, uncertainties);
        double total = 0, uncertainty = 0;
        for (std::size_t i = 0; i < fractions.size(); ++i) {
            total += fractions[i];
            uncertainty += uncertainties[i];
        }
        Count &count = counts[2 * int(mode) + int(polarity)];
        ++count.all;
        count.withinUncertainty += std::fabs(total - truth) <= uncertainty;
        count.withinTenPercent += std::fabs(total - truth) <= 0.1 * truth;
    });
    ASSERT_EQ(counts.size(), 4u);
    for (const auto &[key, count] : counts) {
        EXPECT_GT(count.all, 60) << key;
        EXPECT_GE(count.withinUncertainty, 0.9 * count.all) << key;
        EXPECT_GE(count.withinTenPercent, 0.9 * count.all) << key;
    }
}

TEST_P(TruthRecovered, GrowingModeIsFollowed)
{
    struct Hour {
        std::vector<double> found, true_;
    };
    std::map<int, Hour> hours[2];
    invertEvent([&](int slot, Polarity polarity, const SpectMath::Spectrum &spectrum) {
        if (Campaign::modeOf(slot) != Mode::Particles)
            return;
        Hour &hour = hours[int(polarity)][int(24 * campaign.dayOf(slot))];
        const RealVector points = fineAxis(*spectrum.info);
        hour.true_.push_back(
            growingMode(campaign.truth(Mode::Particles, polarity, points, campaign.dayOf(slot)), points));
        hour.found.push_back(growingMode(spectrum.concentrations, spectrum.info->radii));
    });
    for (const auto &polarity : hours) {
        ASSERT_GE(polarity.size(), 8u);
        double before = 0;
        for (const auto &[hour, modes] : polarity) {
            const double found = median(modes.found);
            EXPECT_NEAR(found / median(modes.true_), 1, 0.15) << "at " << hour << " h, " << found << " nm";
            if (hour < 13 || hour > 18)
                continue;
            EXPECT_GT(found, before + 2) << hour;
            EXPECT_LT(found, 14 + 6.5 * (hour - 13)) << hour;
            before = found;
        }
        EXPECT_GT(before, 33);
        EXPECT_LT(before, 43);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TruthRecovered, ::testing::Values(1, 2, 12345));
