#include "spectra/orderedinversion.h"

#include "spectra/instrument_model.h"
#include "support/instrument.h"
#include "support/shortmemory.h"

#include <gtest/gtest.h>

using SpectMath::OrderedInversion;
using SpectMath::SpectrumRecordPointer;

namespace {

class OrderedInversions : public ::testing::Test {
protected:
    OrderedInversions() : model(8, 10, 10, 3)
    {
        inverters.push_back(std::make_shared<SpectMath::Inverter>(model.settings, testInfo("ions", {})));
        for (int i = 0; i < 1000; ++i) {
            auto record = std::make_shared<Record>();
            record->beginTime = recordTimeFromTicks(i);
            record->opmode = i % 5 == 0 ? 1 : 0;
            record->interim = i % 97 == 0;
            model.measure(record->currents, record->currentVariances);
            if (i % 101 == 1)
                record->currents.resize(3); // can't be inverted
            records.push_back(record);
        }
    }

    InstrumentModel model;
    const Spectrometer::RecordMetadata metadata = *testMetadata({"ions", "others"});
    SpectMath::InverterList inverters;
    OrderedInversion::Records records;
};

} // namespace

TEST_F(OrderedInversions, ComeInOrderAndTheSameForAnyNumberOfThreads)
{
    for (int threads : {1, 2, 8}) {
        OrderedInversion inversion(records, inverters, metadata, threads);
        SpectrumRecordPointer result;
        QStringList complaints;
        int expectedComplaints = 0;
        const auto complain = [&](int, const QString &text) { complaints << text; };
        for (std::size_t i = 0; i < records.size(); ++i) {
            ASSERT_TRUE(inversion.next(result, complain));
            const Record &record = *records[i];
            ASSERT_EQ(result == nullptr, record.interim) << i;
            if (!result)
                continue;
            ASSERT_EQ(result->beginTime, record.beginTime);
            const bool fits = record.currents.size() == 8;
            expectedComplaints += record.opmode == 0 && !fits;
            ASSERT_EQ(complaints.size(), expectedComplaints) << i; // with their record, not before
            ASSERT_EQ(result->spectra.size(), record.opmode == 0 && fits ? 1u : 0u) << i;
            if (result->spectra.empty())
                continue;
            const auto expected = inverters[0]->invert(record.currents, record.currentVariances);
            for (std::size_t k = 0; k < expected->concentrations.size(); ++k)
                ASSERT_EQ(result->spectra[0]->concentrations[k], expected->concentrations[k]);
        }
        EXPECT_FALSE(inversion.next(result, complain));
        EXPECT_GT(expectedComplaints, 5);
    }
}

TEST_F(OrderedInversions, MayBeLeftAtAnyTime)
{
    const auto ignore = [](int, const QString &) {};
    for (std::size_t taken = 0; taken < records.size(); ++taken) {
        OrderedInversion inversion(records, inverters, metadata, taken % 2 == 0 ? 2 : 8);
        SpectrumRecordPointer result;
        for (std::size_t i = 0; i < taken; ++i) {
            ASSERT_TRUE(inversion.next(result, ignore));
            ASSERT_TRUE(!result || result->beginTime == records[i]->beginTime);
        }
    }
    const OrderedInversion::Records none;
    OrderedInversion nothing(none, inverters, metadata, 4);
    SpectrumRecordPointer result;
    EXPECT_FALSE(nothing.next(result, ignore));
}

TEST_F(OrderedInversions, GoOnWhereThereIsNoMemoryForAThread)
{
    if (!ShortMemory::isPossible)
        GTEST_SKIP() << "the sanitizer has an allocator of its own";
    ShortMemory::isMarked = true;
    for (int nth = 1; nth < 12; ++nth) {
        ShortMemory::letFail(true, nth + 1, 3); // the first is the ring's
        OrderedInversion inversion(records, inverters, metadata, 4);
        ShortMemory::failures = 0;
        SpectrumRecordPointer result;
        std::size_t taken = 0;
        for (; inversion.next(result, [](int, const QString &) {}); ++taken)
            EXPECT_TRUE(!result || result->beginTime == records[taken]->beginTime);
        EXPECT_EQ(taken, records.size()) << nth;
    }
    ShortMemory::isMarked = false;
}
