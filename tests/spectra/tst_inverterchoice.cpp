#include "spectra/inverterchoice.h"

#include <gtest/gtest.h>

using namespace SpectMath;

namespace {

/// From words "mode:hash", of which the mode may be empty.
InverterList invertersOf(const QString &words)
{
    InverterList list;
    for (const QString &word : words.split(' ', Qt::SkipEmptyParts)) {
        auto info = std::make_shared<SpectrumInfo>();
        info->opmode = word.section(':', 0, 0);
        info->hash = word.section(':', 1);
        list.push_back(std::make_shared<const Inverter>(InverterSettings(), info));
    }
    return list;
}

} // namespace

TEST(InverterChoice, TakesTheLastOfEqualOnesThatFitAModeOfTheRecords)
{
    const struct {
        std::vector<int> modesOfRecords;
        const char *loaded;
        std::vector<std::size_t> used, replaced; ///< places among the loaded
    } cases[] = {
        {{0, 1}, "ions:a particles:b", {0, 1}, {}},
        {{1, 1}, "ions:a particles:b fog:c", {1}, {}},
        {{}, "ions:a", {}, {}},
        {{0}, "", {}, {}},
        {{0}, "ions:a ions:b ions:a ions:c", {1, 2, 3}, {0}},
        {{0, 1}, "ions:a particles:b ions:a particles:b ions:a", {3, 4}, {0, 1, 2}},
        {{1}, "ions:a ions:a", {}, {}},
        // A record of unknown mode has none, not the one without a name.
        {{-1, 3, 1000}, ":a ions:b", {}, {}},
        {{2}, ":a ions:b", {0}, {}},
    };
    Spectrometer::RecordMetadata metadata;
    metadata.opmodes = {Opmode(0, "ions"), Opmode(1, "particles"), Opmode(2, "")};
    for (const auto &c : cases) {
        std::deque<std::shared_ptr<Record>> records;
        for (const int mode : c.modesOfRecords) {
            records.push_back(std::make_shared<Record>());
            records.back()->opmode = mode;
        }
        const InverterList loaded = invertersOf(c.loaded);
        const InverterChoice choice = chooseInverters(loaded, records, metadata);
        const auto at = [&loaded](const std::vector<std::size_t> &places) {
            InverterList list;
            for (const std::size_t place : places)
                list.push_back(loaded[place]);
            return list;
        };
        EXPECT_EQ(choice.used, at(c.used)) << c.loaded;
        EXPECT_EQ(choice.replaced, at(c.replaced)) << c.loaded;
    }
}
