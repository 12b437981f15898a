#include "gui/common/inversionstatistics.h"

#include "support/instrument.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

void add(Datastore &store, const SpectMath::SpectrumInfoPointer &info, double error)
{
    auto record = std::make_shared<Record>();
    record->beginTime = record->midTime = recordTimeFromTicks((store.size() + 1) * ticksPerSecond);
    record->endTime = recordTimeFromTicks((store.size() + 2) * ticksPerSecond);
    auto spectrum = std::make_shared<SpectMath::Spectrum>();
    spectrum->info = info;
    spectrum->currentRmsError = error;
    record->spectra.push_back(spectrum);
    store.insertRecord(store.lowerBound(record->beginTime), record);
    store.enterSpectrum(record, spectrum);
}

} // namespace

TEST(InversionStatistics, ReportsWhatHasMoreThanTenValues)
{
    Datastore store;
    store.setLimitRecords(false);
    const auto z = namedSpectrum("z", "1", "inv", "c"), a = namedSpectrum("a spectrum", "2", "", "comment"),
               few = namedSpectrum("few", "3", "inv");
    for (int i = 0; i < 11; ++i) {
        add(store, z, 0.1 * (i * 7 % 11)); // in no order
        add(store, a, 1234567 + i);
        if (i < 10)
            add(store, few, i);
    }
    add(store, few, std::nan(""));
    EXPECT_EQ(InversionStatistics::report(store),
              "Inversion statistics report:\n"
              "dist_name  | file_name | rms_q10     | rms_q50     | rms_q90     | count\n"
              "a spectrum | comment   | 1.23457e+06 | 1.23457e+06 | 1.23458e+06 | 11   \n"
              "z          | inv       | 0.1         | 0.5         | 0.9         | 11   ");
}
