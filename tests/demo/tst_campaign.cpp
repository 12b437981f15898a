#include "demo/campaign.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using Demo::Campaign;
using Demo::Mode;
using Demo::Polarity;

namespace {

/// The total of a spectrum, 1/cm^3, by the trapezoids over log10 of its axis.
double totalOf(const SpectMath::Spectrum &spectrum)
{
    RealVector fractions, uncertainties;
    spectrum.getFractions(fractions, uncertainties);
    double total = 0;
    for (double fraction : fractions)
        total += fraction;
    return total;
}

/// The records of a day, by mode.
class CampaignTest : public ::testing::TestWithParam<unsigned> {
protected:
    CampaignTest()
    {
        Campaign::Settings settings;
        settings.seed = GetParam();
        campaign = std::make_unique<Campaign>(settings);
        for (int slot = 0; slot < campaign->slotCount(); ++slot) {
            if (auto record = campaign->record(slot)) {
                records.push_back(record);
                slots.push_back(slot);
            }
        }
    }

    double hour(std::size_t i) const { return 24 * campaign->dayOf(slots[i]); }

    std::unique_ptr<Campaign> campaign;
    std::vector<std::shared_ptr<Record>> records;
    std::vector<int> slots;
};

} // namespace

TEST_P(CampaignTest, TotalsAreThoseOfRealAir)
{
    double quietest = 1e9, busiest = 0;
    for (std::size_t i = 0; i < records.size(); ++i)
        for (const auto &spectrum : records[i]->spectra) {
            if (spectrum->status != 0)
                continue;
            const double total = totalOf(*spectrum);
            if (records[i]->opmode == int(Mode::Ions)) {
                EXPECT_GT(total, 350) << hour(i);
                EXPECT_LT(total, 3000) << hour(i);
            } else {
                quietest = std::min(quietest, total);
                busiest = std::max(busiest, total);
            }
        }
    EXPECT_GT(quietest, 300);
    EXPECT_LT(quietest, 1500);
    EXPECT_GT(busiest, 1e4);
    EXPECT_LT(busiest, 5e4);
}

TEST_P(CampaignTest, NoiseIsThatOfTheVariances)
{
    // Currents against the truth, in deviations: mean 0, variance 1.
    double sum = 0, squares = 0, count = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Record &record = *records[i];
        for (Polarity polarity : {Polarity::Negative, Polarity::Positive}) {
            const RealVector expected =
                campaign->trueCurrents(Mode(record.opmode), polarity, campaign->dayOf(slots[i]));
            for (std::size_t k = 0; k < expected.size(); ++k) {
                const double measured = record.currents[std::size_t(Demo::Instrument::firstChannel(polarity)) + k];
                if (std::isnan(measured))
                    continue;
                const double variance = campaign->instrument().variance(expected[k], campaign->averagingSeconds());
                const double scaled = (measured - expected[k]) / std::sqrt(variance);
                sum += scaled;
                squares += scaled * scaled;
                ++count;
            }
        }
    }
    EXPECT_GT(count, 20000);
    EXPECT_NEAR(sum / count, 0, 0.03);
    EXPECT_NEAR(squares / count, 1, 0.05);
}

TEST_P(CampaignTest, HoldsEverythingThatAReaderMustCopeWith)
{
    std::set<int> modes, flagTypes;
    int missingCurrents = 0, missingVariables = 0, failed = 0;
    for (const auto &record : records) {
        modes.insert(record->opmode);
        for (const auto &flag : record->flags)
            flagTypes.insert(flag->type);
        missingCurrents += int(std::count_if(record->currents.begin(), record->currents.end(),
                                             [](double value) { return std::isnan(value); }));
        missingVariables += int(std::count_if(record->variables.begin(), record->variables.end(),
                                              [](double value) { return std::isnan(value); }));
        for (const auto &spectrum : record->spectra)
            failed += spectrum->status != 0;
    }
    EXPECT_EQ(modes, (std::set<int>{0, 1, 2}));
    EXPECT_EQ(flagTypes, (std::set<int>{0, 1, 2}));
    EXPECT_GT(missingCurrents, 2);
    EXPECT_LT(missingCurrents, 30);
    EXPECT_GT(missingVariables, 10);
    EXPECT_GT(failed, 10);
    EXPECT_LT(failed, 60);
    EXPECT_LT(records.size(), std::size_t(campaign->slotCount() - 8)); // the gap
    EXPECT_EQ(campaign->metadata()->variables.size(), 34);
    EXPECT_EQ(campaign->metadata()->totalElectrometers, 42);
}

TEST_P(CampaignTest, FlagsNameVariablesAndElectrometersThatThereAre)
{
    std::set<QString> flagsWithBoth;
    for (const auto &record : records) {
        for (const auto &flag : record->flags) {
            const QStringList vars = flag->properties["vars"].toStringList();
            const QVariantList elms = flag->properties["elms"].toList();
            for (const QString &name : vars)
                EXPECT_TRUE(campaign->metadata()->variable(name)) << qPrintable(name);
            for (const QVariant &number : elms)
                EXPECT_LT(number.toUInt(), 42u);
            if (!vars.isEmpty() && !elms.isEmpty())
                flagsWithBoth.insert(flag->message);
        }
    }
    EXPECT_GE(flagsWithBoth.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CampaignTest, ::testing::Values(1, 2, 12345));
