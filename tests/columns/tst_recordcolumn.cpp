#include "columns/recordcolumn.h"
#include "support/plotstore.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using Tsb::RecordColumn;
using Tsb::SeriesColumn;

double ticksAndVariable(const Record &record)
{
    return double(ticksOf(record.beginTime - Ticks(ticksOf(testStart)))) + record.variables[0];
}

double residual(const SpectMath::Spectrum &spectrum)
{
    return spectrum.currentRmsError;
}

/// A store that drops its oldest records, and columns that hear of what it tells.
class Columns : public Seeded<> {
protected:
    Columns()
    {
        store.setMaxRecords(mostRecords);
        ofRecords.setValueOf([this](const Record &record) {
            ++worked;
            return ticksAndVariable(record);
        });
        QObject::connect(&store, &Datastore::updated,
                         [this](int index, const std::shared_ptr<Record> &record, int flags) {
                             if (flags != SpectraChanged)
                                 return ofRecords.noteUpdated(store, index, *record);
                             for (SeriesColumn &column : ofSeries)
                                 column.noteUpdated(store, record);
                         });
    }

    Spectrometer::FullRecordPointer row(double second)
    {
        auto record = testRecord(second, second + 1, 0);
        record->variables = RealVector(1, std::uniform_real_distribution<double>(0, 1)(random));
        return record;
    }
    void invert(const Record &record, int which)
    {
        auto spectrum = testSpectrum(infos[std::size_t(which)]);
        spectrum->currentRmsError = double(random());
        store.addSpectra(resultFor(record, {spectrum}));
    }
    std::shared_ptr<Record> anyRecord() { return store.at(int(random() % unsigned(store.size()))); }

    /// Against columns that are made now.
    void expectRight()
    {
        RecordColumn<double> fresh;
        fresh.setValueOf(ticksAndVariable);
        expectSame(ofRecords.values(store), fresh.values(store), store.records().size());
        for (SeriesColumn &column : ofSeries) {
            SeriesColumn freshSeries(infos[&column == &ofSeries[0] ? 0 : 1], residual);
            const auto series = store.series(column.key());
            expectSame(column.values(store), freshSeries.values(store), series ? series->size() : 0);
        }
    }
    static void expectSame(const double *values, const double *expected, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            ASSERT_EQ(values[i], expected[i]) << i << " of " << size;
    }

    static constexpr int mostRecords = 300;
    int worked = 0;
    std::vector<SpectMath::SpectrumInfoPointer> infos{testInfo("a", {}), testInfo("b", {})};
    Datastore store;
    RecordColumn<double> ofRecords;
    std::vector<SeriesColumn> ofSeries{SeriesColumn(infos[0], residual), SeriesColumn(infos[1], residual)};
};

INSTANTIATE_TEST_SUITE_P(Seeds, Columns, ::testing::ValuesIn(seeds(3)));

TEST_P(Columns, FollowAStoreThatDropsItsOldest)
{
    store.addFullRecord(row(0));
    double next = 1;
    for (int step = 0; step < 6000; ++step) {
        const unsigned kind = random() % 100;
        const bool quiet = random() % 20 == 0; // as readers do, which tell nothing
        if (kind < 50) {
            store.addFullRecord(row(next));
            next += random() % 10 == 0 ? 0 : 2; // some begin together
        } else if (kind < 60) {
            store.addFullRecord(row(next - double(random() % 800)));
        } else if (kind < 70) {
            const auto known = anyRecord();
            auto update = row(0);
            static_cast<Spectrometer::RecordHead &>(*update) = *known;
            store.updateFullRecord(update);
        } else if (kind < 98) {
            invert(*anyRecord(), int(random() % 2));
        } else if (kind == 98 && quiet) {
            store.removeSpectrum(infos[1].get());
        } else if (quiet) {
            std::vector<std::shared_ptr<Record>> rows;
            for (int i = 0; i < 4; ++i)
                rows.push_back(makeRecord(*row(next - 400 + 100 * i)));
            store.mergeRecords(std::move(rows));
        }
        if (step % 700 == 650)
            store.setMaxRecords(step % 1400 == 650 ? mostRecords / 2 : mostRecords);
        if (random() % 3 == 0)
            expectRight();
        if (HasFatalFailure())
            return;
    }
    expectRight();
}

TEST_P(Columns, WorkOutOnlyWhatCameIn)
{
    int second = 0;
    for (; second < mostRecords; ++second)
        store.addFullRecord(row(second));
    ofRecords.values(store);
    worked = 0;
    for (int i = 0; i < 5 * mostRecords; ++i, ++second) {
        store.addFullRecord(row(second));
        ofRecords.values(store);
    }
    EXPECT_EQ(store.size(), mostRecords);
    EXPECT_EQ(worked, 5 * mostRecords);
}

TEST(ManyRecords, HaveTheirValuesWhicheverThreadWorksThemOut)
{
    constexpr int count = 120'001;
    const auto info = testInfo("a", {});
    Datastore store;
    store.setLimitRecords(false);
    std::vector<std::shared_ptr<Record>> records;
    std::vector<SpectrumRecord> entries;
    for (int i = 0; i < count; ++i) {
        auto record = makeRecord();
        record->beginTime = testStart + Ticks(i);
        record->endTime = record->beginTime + Ticks(1);
        record->variables = RealVector(2, i);
        records.push_back(record);
        auto spectrum = testSpectrum(info);
        spectrum->currentRmsError = i;
        entries.push_back({record, spectrum});
    }
    store.mergeRecords(std::move(records));
    store.enterSpectra(std::move(entries));
    RecordColumn<double> ofRecords;
    ofRecords.setValueOfNumber({&Record::variables, 1}, [](double number) { return number; });
    SeriesColumn ofSeries(info, residual), ofTotals = SeriesColumn::ofTotalDecades(info);
    const double *const values = ofRecords.values(store), *const residuals = ofSeries.values(store);
    const double *const totals = ofTotals.values(store);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(values[i], i);
        ASSERT_EQ(residuals[i], i);
        ASSERT_TRUE(std::isnan(totals[i])) << "a failed spectrum";
    }
}

/// Counts how often values move.
struct Counted {
    int value = 0;
    Counted(int v) : value(v) {}
    Counted(const Counted &other) : value(other.value) { ++moves; }
    Counted &operator=(const Counted &other)
    {
        value = other.value;
        ++moves;
        return *this;
    }
    static inline int moves = 0;
};

TEST(ValueQueue, MovesEachValueAFewTimesWhateverItsLength)
{
    for (const int length : {1, 10, 10'000}) {
        ValueQueue<Counted> queue;
        for (int i = 0; i < length; ++i)
            queue.insert(queue.size(), i);
        Counted::moves = 0;
        for (int i = 0; i < 100'000; ++i) {
            queue.removeFirst(1);
            queue.insert(queue.size(), length + i);
            ASSERT_EQ(queue.size(), std::size_t(length));
            ASSERT_EQ(queue.data()[0].value, i + 1);
            ASSERT_EQ(queue.data()[length - 1].value, length + i);
        }
        EXPECT_LT(Counted::moves, 500'000) << length;
    }
}

} // namespace

TEST_P(Columns, ThoseOfOneStoreAreWorkedOutTogether)
{
    for (int i = 0; i < 70; ++i)
        store.addFullRecord(row(i));
    ASSERT_EQ(store.size(), 70);
    RecordColumn<double> kept, stale, ofTimes, ofMarks;
    kept.setValueOf([](const Record &) { return 1.0; });
    kept.values(store);
    kept.invalidate();
    const auto variable = [](const Record &record) { return record.variables[0]; };
    stale.setValueOfNumber({&Record::variables, 0}, [](double number) { return number; });
    ofTimes.setValueOf(ticksAndVariable);
    ofMarks.setValueOfMarks([](const RecordMarks &marks) { return double(marks.opmode); });
    const auto revision = stale.revision();
    RecordColumn<double>::bringUpToDate({&kept, &stale, &ofTimes, &ofMarks}, store);
    EXPECT_NE(stale.revision(), revision);
    for (int i = 0; i < store.size(); ++i) {
        ASSERT_EQ(kept.values(store)[i], 1.0);
        ASSERT_EQ(stale.values(store)[i], variable(*store.at(i)));
        ASSERT_EQ(ofTimes.values(store)[i], ticksAndVariable(*store.at(i)));
        ASSERT_EQ(ofMarks.values(store)[i], store.at(i)->opmode);
    }
}
