#include "store/storecontents.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace StoreContents;

TEST(Datastore, EmptyStoreAnswers)
{
    Datastore store;
    const auto record = storedRecord(5, 6);
    EXPECT_TRUE(store.lowerBound(at(5)) == store.records().end());
    EXPECT_EQ(store.firstIndexFrom(at(5)), 0);
    EXPECT_EQ(store.lastIndexEndingBy(at(5)), -1);
    EXPECT_EQ(store.indexOf(at(5), at(6)), -1);
    EXPECT_EQ(store.indexOfHead(*record), -1);
    EXPECT_EQ(store.neighbour(record, 0), nullptr);
    EXPECT_EQ(store.neighbourWithOpmode(record, 1, 0), nullptr);
    EXPECT_EQ(store.neighbourWithOpmode(record, 0, 0), record);
    EXPECT_EQ(store.series(nullptr), nullptr);
    EXPECT_TRUE(store.seriesSpans(nullptr).isEmpty());
    EXPECT_DEATH(store.at(0), "");
}

TEST(Datastore, AddsUpdatesAndUpserts)
{
    Datastore store;
    Listener listener(store);
    store.addFullRecord(fullRecord(100, 200, 0, 1.0));
    store.addFullRecord(fullRecord(50, 60, 0, 1.0));
    EXPECT_EQ(listener.take(), "+0:100:1 +0:50:1");
    const auto known = store.at(1);
    store.addFullRecord(fullRecord(100, 200, 0, 2.0));
    EXPECT_EQ(listener.take(), "+1:100:1") << "told, though nothing changed";
    EXPECT_EQ(known->currents[0], 1.0);

    known->spectra.push_back(spectrumOf(makeInfo("a")));
    store.updateFullRecord(fullRecord(100, 200, 0, 3.0));
    EXPECT_EQ(listener.take(), "+1:100:2");
    store.upsertFullRecord(fullRecord(100, 200, 0, 4.0));
    EXPECT_EQ(listener.take(), "+1:100:2");
    EXPECT_EQ(store.at(1), known) << "the same object";
    EXPECT_EQ(known->currents[0], 4.0);
    EXPECT_EQ(known->spectra.size(), 1u);
    EXPECT_EQ(ticksOf(known->midTime), 150);

    store.updateFullRecord(fullRecord(100, 201));
    EXPECT_EQ(listener.take(), "") << "another end is another record";
    store.upsertFullRecord(fullRecord(100, 201, 0, 5.0));
    EXPECT_EQ(listener.take(), "+1:100:1");
    EXPECT_EQ(ticksOf(store.at(1)->endTime), 201) << "goes before the record of the same begin";
    store.addFullRecord(fullRecord(100, 200, 0, 6.0));
    EXPECT_EQ(store.size(), 4) << "only the first record of a time is compared";
    EXPECT_EQ(store.indexOf(at(100), at(201)), 2);
    EXPECT_EQ(store.indexOfHead(*fullRecord(100, 200)), 1);
    store.addFullRecord(nullptr);
    store.updateFullRecord(nullptr);
    store.addSpectra(nullptr);
    EXPECT_EQ(store.size(), 4);
}

TEST(Datastore, DropsTheOldestBeyondTheLimit)
{
    Datastore store;
    store.setMaxRecords(3);
    const auto info = makeInfo("a");
    Listener listener(store);
    for (const int begin : {10, 20, 20, 30}) {
        store.addFullRecord(fullRecord(begin, begin + store.size()));
        store.addSpectra(resultFor(*store.at(store.lowerBoundIndex(at(begin))), {spectrumOf(info)}));
    }
    EXPECT_EQ(listener.take(), "+0:10:1 +0:10:4 +1:20:1 +1:20:4 +1:20:1 +1:20:4 -0:10(2) +2:30:1 +2:30:4");
    EXPECT_EQ(store.series(info.get())->size(), 3u);
    store.addFullRecord(fullRecord(5, 6));
    EXPECT_EQ(listener.take(), "-0:20(2) +0:5:1") << "the newcomer goes to the front though it is the oldest";
    EXPECT_EQ(store.series(info.get())->size(), 1u) << "the other record of that time loses its entry too";
    EXPECT_EQ(store.seriesSpans(info.get()).size(), 1u);
    EXPECT_EQ(store.seriesSpans(info.get()).begin(0), 30);
    EXPECT_EQ(store.lostEntries(info.get()), 3u);
    store.setMaxRecords(1);
    store.addFullRecord(fullRecord(40, 41));
    EXPECT_EQ(listener.take(), "-0:5(2) -0:20(1) -0:30(0) +0:40:1");
    EXPECT_TRUE(store.spectrumSeries().contains(info.get())) << "an emptied series stays";
}

TEST(Datastore, AFullStoreKeepsSpansAndMarksRight)
{
    std::mt19937 random(3);
    Datastore store;
    store.setMaxRecords(400);
    const auto info = makeInfo("a");
    std::int64_t entered = 0;
    std::size_t removed = 0;
    QObject::connect(&store, &Datastore::removed, &store, [&] { EXPECT_EQ(store.lostRecords(), ++removed); });
    for (int i = 0; i < 3000; ++i) {
        const int begin = 10'000 + 10 * i - (random() % 8 == 0 ? int(random() % 5000) : 0);
        store.addFullRecord(fullRecord(begin, begin + 5, i % 3));
        auto changed = std::make_shared<FullRecord>(*store.at(int(random() % unsigned(store.size()))));
        changed->provisional = random() % 2 == 0;
        changed->regular = random() % 2 == 0;
        if (i % 2 == 0)
            store.updateFullRecord(changed);
        else
            store.upsertFullRecord(changed);
        if (random() % 4 != 0) {
            const auto &record = store.at(int(random() % unsigned(store.size())));
            const auto before = store.series(info.get()) ? store.series(info.get())->size() : 0;
            store.enterSpectrum(record, spectrumOf(info));
            entered += std::int64_t(store.series(info.get())->size() - before);
        }
        if (random() % 5 != 0) // otherwise the spans fall behind
            continue;
        const SpanIndex &spans = store.recordSpans();
        ASSERT_EQ(spans.size(), store.records().size());
        for (std::size_t k = 0; k < spans.size(); ++k)
            ASSERT_EQ(spans.begin(k), ticksOf(store.records()[k]->beginTime)) << k;
        for (int k = 0; k < store.size(); ++k) {
            const RecordMarks &marks = store.recordMarks()[k];
            ASSERT_EQ(marks.opmode, store.at(k)->opmode) << k;
            ASSERT_EQ(marks.regular, store.at(k)->regular) << k;
            ASSERT_EQ(marks.provisional, store.at(k)->provisional) << k;
        }
        const auto series = store.series(info.get());
        const SpanIndex &seriesSpans = store.seriesSpans(info.get());
        ASSERT_EQ(seriesSpans.size(), series ? series->size() : 0);
        for (std::size_t k = 0; k < seriesSpans.size(); ++k)
            ASSERT_EQ(seriesSpans.end(k), ticksOf((*series)[k].record->endTime)) << k;
    }
    EXPECT_GT(removed, 2000u);
    const std::int64_t lostEntries = entered - std::int64_t(store.series(info.get())->size());
    EXPECT_GT(lostEntries, 1000);
    EXPECT_EQ(std::int64_t(store.lostEntries(info.get())), lostEntries);
    store.removeSpectrum(info.get());
    EXPECT_EQ(std::int64_t(store.lostEntries(info.get())), entered) << "all of it";
}

TEST(Datastore, WarnsOfMissingTimesAndStores)
{
    Datastore store;
    static int warnings;
    warnings = 0;
    const auto previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        warnings += type == QtWarningMsg && text == "Encountered record with no begin or end time";
    });
    store.addFullRecord(fullRecord(0, 5));
    store.addFullRecord(fullRecord(5, 0));
    store.addFullRecord(fullRecord(5, 6));
    store.setLimitRecords(false);
    store.mergeRecords({storedRecord(0, 1), storedRecord(1, 2)});
    qInstallMessageHandler(previous);
    EXPECT_EQ(warnings, 3);
    EXPECT_EQ(store.size(), 5);
}

/// The searches as they are defined, one record after the other.
class PlainStore {
public:
    std::vector<std::shared_ptr<Record>> records;

    int firstIndexFrom(RecordTime t) const
    {
        int i = 0;
        while (i < size() && records[std::size_t(i)]->beginTime < t)
            ++i;
        return i;
    }
    int lastIndexEndingBy(RecordTime t) const
    {
        for (int i = size() - 1; i >= 0; --i) {
            const Record &r = *records[std::size_t(i)];
            if (r.beginTime <= t && r.endTime <= t)
                return i;
        }
        return -1;
    }
    int indexOf(RecordTime b, RecordTime e) const
    {
        for (int i = 0; i < size(); ++i) {
            if (records[std::size_t(i)]->beginTime == b && records[std::size_t(i)]->endTime == e)
                return i;
        }
        return -1;
    }
    std::shared_ptr<Record> neighbourWithOpmode(int from, int steps, int opmode) const
    {
        std::vector<int> matches;
        for (int i = from + (steps > 0 ? 1 : -1); i >= 0 && i<size(); i += steps> 0 ? 1 : -1) {
            if (records[std::size_t(i)]->opmode == opmode)
                matches.push_back(i);
        }
        const auto taken = std::min(matches.size(), std::size_t(std::abs(steps)));
        return records[std::size_t(taken == 0 ? from : matches[taken - 1])];
    }
    void insert(const std::shared_ptr<Record> &record)
    {
        records.insert(records.begin() + firstIndexFrom(record->beginTime), record);
    }
    int size() const { return int(records.size()); }
};

/// A store and a plain list that took in the same records and spectra, in batches and one by one.
class RandomStore : public Seeded<> {
protected:
    std::int64_t number(int below) { return pick(0, below - 1); }
    std::shared_ptr<Record> randomRecord()
    {
        const std::int64_t begin = 1 + number(range);
        return storedRecord(begin, begin + number(9), int(number(3)));
    }
    void addOne()
    {
        const auto record = randomRecord();
        EXPECT_EQ(*store.insertRecord(store.lowerBound(record->beginTime), record), record);
        plain.insert(record);
    }
    void addBatch()
    {
        std::vector<std::shared_ptr<Record>> batch(std::size_t(number(20)));
        std::generate(batch.begin(), batch.end(), [this] { return randomRecord(); });
        std::stable_sort(batch.begin(), batch.end(),
                         [](const auto &x, const auto &y) { return x->beginTime < y->beginTime; });
        std::for_each(batch.rbegin(), batch.rend(), [this](const auto &record) { plain.insert(record); });
        store.mergeRecords(std::move(batch));
    }
    void addSpectrum()
    {
        const auto &owner = plain.records[std::size_t(number(plain.size()))];
        store.enterSpectrum(owner, spectrumOf(info));
        const auto place = std::find_if(entries.begin(), entries.end(),
                                        [&](const auto &r) { return r->beginTime >= owner->beginTime; });
        if (place == entries.end() || *place != owner)
            entries.insert(place, owner);
    }
    void SetUp() override
    {
        makeUnlimited(store);
        addOne();
        for (int k = 0; k < 60; ++k) {
            number(3) == 0 ? addBatch() : addOne();
            if (k % 7 == 0)
                store.updateIndexes(); // sometimes long ago
            addSpectrum();
        }
    }

    const int range = GetParam() % 2 ? 60 : 4000;
    Datastore store;
    PlainStore plain;
    SpectMath::SpectrumInfoPointer info = makeInfo("a");
    std::vector<std::shared_ptr<Record>> entries; ///< of the series, in its order
};

INSTANTIATE_TEST_SUITE_P(Seeds, RandomStore, ::testing::ValuesIn(seeds(40)));

TEST_P(RandomStore, HoldsWhatAPlainListHolds)
{
    ASSERT_EQ(std::vector(store.records().begin(), store.records().end()), plain.records);
    ASSERT_EQ(store.recordSpans().size(), plain.records.size());
    for (std::size_t i = 0; i < plain.records.size(); ++i)
        ASSERT_EQ(store.recordMarks()[i].opmode, plain.records[i]->opmode) << i;
    const SpanIndex &spans = store.seriesSpans(info.get());
    ASSERT_EQ(spans.size(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        ASSERT_EQ((*store.series(info.get()))[i].record, entries[i]);
        ASSERT_EQ(spans.begin(i), ticksOf(entries[i]->beginTime));
        ASSERT_EQ(spans.end(i), ticksOf(entries[i]->endTime));
    }
}

TEST_P(RandomStore, FindsWhatAPlainListFinds)
{
    for (int k = 0; k < 200; ++k) {
        const RecordTime t = at(number(range + 20));
        ASSERT_EQ(store.firstIndexFrom(t), plain.firstIndexFrom(t));
        ASSERT_EQ(store.lastIndexEndingBy(t), plain.lastIndexEndingBy(t));
        const RecordTime e = t + Ticks(number(9));
        ASSERT_EQ(store.indexOf(t, e), plain.indexOf(t, e));
        const int from = int(number(plain.size())), steps = pick(-7, 7), mode = int(number(4));
        const auto &record = plain.records[std::size_t(from)];
        ASSERT_EQ(store.neighbourWithOpmode(record, steps, mode), plain.neighbourWithOpmode(from, steps, mode));
        const bool inside = from + steps >= 0 && from + steps < plain.size();
        ASSERT_EQ(store.neighbour(record, steps),
                  inside ? plain.records[std::size_t(from + steps)] : std::shared_ptr<Record>());
        ASSERT_EQ(store.recordSpans().begin(std::size_t(from)), ticksOf(record->beginTime));
    }
}

TEST(Datastore, InsertionsFarFromTheEndKeepTheSpansRight)
{
    Datastore store;
    makeUnlimited(store);
    for (int i = 0; i < 9000; ++i) {
        const auto record = storedRecord(1000 + 10 * i, 1005 + 10 * i);
        store.insertRecord(store.lowerBound(record->beginTime), record);
    }
    for (const int begin : {1500, 80000, 15, 90995, 45001}) {
        const auto record = storedRecord(begin, begin + 1);
        store.insertRecord(store.lowerBound(record->beginTime), record);
    }
    const SpanIndex &spans = store.recordSpans();
    ASSERT_EQ(spans.size(), store.records().size());
    for (std::size_t i = 0; i < spans.size(); ++i)
        ASSERT_EQ(spans.begin(i), ticksOf(store.records()[i]->beginTime)) << i;
}

TEST(Datastore, AMergeUnderTheLimitIsAsSingleInsertions)
{
    Datastore merged, single;
    for (Datastore *store : {&merged, &single}) {
        store->setMaxRecords(5);
        for (const int begin : {10, 20, 30, 40})
            store->addFullRecord(fullRecord(begin, begin + 1));
    }
    std::vector<std::shared_ptr<Record>> batch = {storedRecord(15, 16), storedRecord(25, 26), storedRecord(50, 51)};
    for (auto r = batch.rbegin(); r != batch.rend(); ++r)
        single.insertRecord(single.lowerBound((*r)->beginTime), *r);
    Listener listener(merged);
    merged.mergeRecords(std::move(batch));
    EXPECT_EQ(listener.take(), "-0:10(4) -0:20(4)");
    ASSERT_EQ(merged.size(), single.size());
    for (int i = 0; i < merged.size(); ++i)
        EXPECT_EQ(merged.at(i)->beginTime, single.at(i)->beginTime);
}

} // namespace
