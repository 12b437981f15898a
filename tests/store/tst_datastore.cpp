#include "store/datastore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using Spectrometer::FullRecord;
using Spectrometer::FullRecordPointer;
using Spectrometer::RecordHead;

RecordTime at(std::int64_t ticks)
{
    return recordTimeFromTicks(ticks);
}

FullRecordPointer fullRecord(std::int64_t begin, std::int64_t end, int opmode = 0, double value = 0.0)
{
    auto record = std::make_shared<FullRecord>();
    record->beginTime = at(begin);
    record->endTime = at(end);
    record->opmode = opmode;
    record->currents = RealVector(1, value);
    return record;
}

std::shared_ptr<Record> storedRecord(std::int64_t begin, std::int64_t end, int opmode = 0)
{
    return makeRecord(*fullRecord(begin, end, opmode));
}

std::shared_ptr<SpectMath::Spectrum> spectrumOf(const SpectMath::SpectrumInfoPointer &info)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->info = info;
    return spectrum;
}

SpectMath::SpectrumInfoPointer makeInfo(const char *name)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = name;
    return info;
}

SpectMath::SpectrumRecordPointer resultFor(const RecordHead &head, SpectMath::SpectrumPointerList spectra,
                                           bool provisional = false)
{
    auto result = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<RecordHead &>(*result) = head;
    result->spectra = std::move(spectra);
    result->provisional = provisional;
    return result;
}

/// Writes down what a store tells: "+" for updated, "-" for removed.
class Listener {
public:
    explicit Listener(Datastore &store)
    {
        QObject::connect(&store, &Datastore::updated, &store, [this](int i, const std::shared_ptr<Record> &r, int f) {
            told += QStringLiteral("+%1:%2:%3 ").arg(i).arg(ticksOf(r->beginTime)).arg(f);
        });
        QObject::connect(&store, &Datastore::removed, &store, [this, &store](int i, const std::shared_ptr<Record> &r) {
            told += QStringLiteral("-%1:%2(%3) ").arg(i).arg(ticksOf(r->beginTime)).arg(store.size());
        });
    }
    std::string take() { return std::exchange(told, QString()).trimmed().toStdString(); }

private:
    QString told;
};

void makeUnlimited(Datastore &store)
{
    store.setLimitRecords(false);
}

TEST(Datastore, empty_store_answers)
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

TEST(Datastore, adds_updates_and_upserts)
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

TEST(Datastore, drops_the_oldest_beyond_the_limit)
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

TEST(Datastore, a_full_store_keeps_spans_and_marks_right)
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

TEST(Datastore, gaps_only_get_smaller)
{
    Datastore store;
    makeUnlimited(store);
    const auto info = makeInfo("a");
    const auto gaps = [&] {
        std::vector<std::int64_t> result;
        for (const SpectrumRecord &entry : *store.series(info.get()))
            result.push_back(entry.nearestGap);
        return result;
    };
    const auto enter = [&](std::int64_t begin) {
        const auto record = storedRecord(begin, begin + 2);
        store.insertRecord(store.lowerBound(record->beginTime), record);
        store.enterSpectrum(record, spectrumOf(info));
        return record;
    };
    using Gaps = std::vector<std::int64_t>;
    enter(100);
    EXPECT_EQ(gaps(), Gaps({0}));
    enter(110);
    const auto third = enter(120);
    enter(130);
    EXPECT_EQ(gaps(), Gaps({10, 10, 10, 10}));
    enter(111);
    EXPECT_EQ(gaps(), Gaps({10, 1, 1, 9, 10}));
    store.enterSpectrum(third, spectrumOf(info));
    EXPECT_EQ(gaps(), Gaps({10, 1, 1, 9, 10})) << "replaced, not entered twice";
    enter(130);
    EXPECT_EQ(gaps(), Gaps({10, 1, 1, 9, 0, 0})) << "a twin in time gets an entry of its own";
    enter(134);
    EXPECT_EQ(gaps(), Gaps({10, 1, 1, 9, 0, 4, 4}));
}

TEST(Datastore, spectra_are_replaced_added_and_removed)
{
    Datastore store;
    makeUnlimited(store);
    const auto a = makeInfo("a"), b = makeInfo("b");
    for (const int begin : {10, 20, 30})
        store.addFullRecord(fullRecord(begin, begin + 10));
    Listener listener(store);
    const auto record = store.at(1);
    const auto first = spectrumOf(a), second = spectrumOf(a), third = spectrumOf(b);
    store.addSpectra(resultFor(*record, {first, third}, true));
    store.addSpectra(resultFor(*record, {second}, false));
    EXPECT_EQ(record->spectra, (SpectMath::SpectrumPointerList{first, third, second}));
    EXPECT_FALSE(record->spectraProvisional) << "overwritten all the same";
    ASSERT_EQ(store.series(a.get())->size(), 1u);
    EXPECT_EQ(store.series(a.get())->front().spectrum, second);

    store.replaceSpectra(resultFor(*record, {first}, true));
    EXPECT_EQ(record->spectra, (SpectMath::SpectrumPointerList{first}));
    EXPECT_TRUE(record->spectraProvisional);
    EXPECT_EQ(store.series(b.get())->front().spectrum, third) << "entries of former spectra stay";

    store.addSpectra(resultFor(*store.at(2), {spectrumOf(b), spectrumOf(a), spectrumOf(b)}));
    store.replaceSpectra(resultFor(*fullRecord(20, 31), {first}));
    EXPECT_EQ(listener.take(), "+1:20:4 +1:20:4 +1:20:4 +2:30:4") << "an unknown head is silent";

    store.removeSpectrum(b.get());
    EXPECT_EQ(listener.take(), "+2:30:4");
    EXPECT_EQ(store.at(2)->spectra.size(), 1u);
    EXPECT_EQ(store.series(b.get()), nullptr);
    store.removeSpectrum(b.get());
    EXPECT_EQ(listener.take(), "");
}

TEST(Datastore, warns_of_missing_times_and_stores)
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

TEST(Datastore, agrees_with_a_plain_list_on_random_operations)
{
    std::mt19937 random(11);
    const auto number = [&random](int below) { return std::int64_t(random() % unsigned(below)); };
    for (int round = 0; round < 40; ++round) {
        Datastore store;
        makeUnlimited(store);
        PlainStore plain;
        const auto info = makeInfo("a");
        std::vector<std::shared_ptr<Record>> entries; // of the series, in its order
        const int range = round % 2 ? 60 : 4000;
        for (int k = 0; k < 60; ++k) {
            if (number(3) == 0) { // a file's new records at once
                std::vector<std::shared_ptr<Record>> batch;
                for (std::int64_t i = number(20); i > 0; --i) {
                    const std::int64_t begin = 1 + number(range);
                    batch.push_back(storedRecord(begin, begin + number(9), int(number(3))));
                }
                std::stable_sort(batch.begin(), batch.end(),
                                 [](const auto &x, const auto &y) { return x->beginTime < y->beginTime; });
                for (auto r = batch.rbegin(); r != batch.rend(); ++r)
                    plain.insert(*r);
                store.mergeRecords(std::move(batch));
            } else {
                const std::int64_t begin = 1 + number(range);
                const auto record = storedRecord(begin, begin + number(9), int(number(3)));
                const auto place = store.insertRecord(store.lowerBound(record->beginTime), record);
                EXPECT_EQ(*place, record);
                plain.insert(record);
            }
            if (plain.size() == 0)
                continue;
            if (k % 7 == 0)
                store.updateIndexes(); // sometimes long ago
            const auto &owner = plain.records[std::size_t(number(plain.size()))];
            store.enterSpectrum(owner, spectrumOf(info));
            const auto place = std::find_if(entries.begin(), entries.end(),
                                            [&](const auto &r) { return r->beginTime >= owner->beginTime; });
            if (place == entries.end() || *place != owner)
                entries.insert(place, owner);
        }
        ASSERT_TRUE(
            std::equal(plain.records.begin(), plain.records.end(), store.records().begin(), store.records().end()));
        const SpanIndex &spans = store.recordSpans();
        const SpanIndex &seriesSpans = store.seriesSpans(info.get());
        ASSERT_EQ(spans.size(), plain.records.size());
        for (std::size_t i = 0; i < spans.size(); ++i)
            ASSERT_EQ(store.recordMarks()[i].opmode, plain.records[i]->opmode) << i;
        ASSERT_EQ(seriesSpans.size(), entries.size());
        for (std::size_t i = 0; i < entries.size(); ++i) {
            ASSERT_EQ((*store.series(info.get()))[i].record, entries[i]);
            ASSERT_EQ(seriesSpans.begin(i), ticksOf(entries[i]->beginTime));
            ASSERT_EQ(seriesSpans.end(i), ticksOf(entries[i]->endTime));
        }
        for (int k = 0; k < 200; ++k) {
            const RecordTime t = at(number(range + 20));
            ASSERT_EQ(store.firstIndexFrom(t), plain.firstIndexFrom(t));
            ASSERT_EQ(store.lastIndexEndingBy(t), plain.lastIndexEndingBy(t));
            const RecordTime e = t + Ticks(number(9));
            ASSERT_EQ(store.indexOf(t, e), plain.indexOf(t, e));
            const int from = int(number(plain.size()));
            const int steps = int(number(15)) - 7;
            const int mode = int(number(4));
            const auto &record = plain.records[std::size_t(from)];
            ASSERT_EQ(store.neighbourWithOpmode(record, steps, mode), plain.neighbourWithOpmode(from, steps, mode));
            const bool inside = from + steps >= 0 && from + steps < plain.size();
            ASSERT_EQ(store.neighbour(record, steps),
                      inside ? plain.records[std::size_t(from + steps)] : std::shared_ptr<Record>());
            ASSERT_EQ(spans.begin(std::size_t(from)), ticksOf(record->beginTime));
        }
    }
}

TEST(Datastore, insertions_far_from_the_end_keep_the_spans_right)
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

TEST(Datastore, a_merge_under_the_limit_is_as_single_insertions)
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

TEST(Datastore, many_spectra_at_once_are_as_each_in_turn)
{
    std::mt19937 random(5);
    const auto infos = {makeInfo("a"), makeInfo("b")};
    for (int round = 0; round < 60; ++round) {
        Datastore atOnce, inTurn;
        std::vector<std::shared_ptr<Record>> records;
        const bool twins = round % 3 == 0; // records of one time, which go the one before the other
        for (int i = 0; i < 200; ++i) {
            const int begin = twins ? int(random() % 300) : 10 * i + int(random() % 10);
            records.push_back(storedRecord(1 + begin, 2 + begin + int(random() % 5)));
        }
        for (int batch = 0; batch < 6; ++batch) {
            std::vector<SpectrumRecord> entries;
            for (int i = int(random() % 120); i > 0; --i) {
                const auto &info = *(infos.begin() + random() % 2);
                entries.push_back({records[random() % records.size()], spectrumOf(info), 0});
            }
            std::stable_sort(entries.begin(), entries.end(), [](const SpectrumRecord &x, const SpectrumRecord &y) {
                return x.record->beginTime < y.record->beginTime;
            });
            for (const SpectrumRecord &entry : entries)
                inTurn.enterSpectrum(entry.record, entry.spectrum);
            atOnce.enterSpectra(std::move(entries));
            for (const auto &info : infos) {
                const auto expected = inTurn.series(info.get());
                const auto series = atOnce.series(info.get());
                ASSERT_EQ(bool(series), bool(expected));
                if (!series)
                    continue;
                ASSERT_EQ(series->size(), expected->size());
                ASSERT_EQ(atOnce.seriesSpans(info.get()).size(), series->size());
                for (std::size_t i = 0; i < series->size(); ++i) {
                    ASSERT_EQ((*series)[i].record, (*expected)[i].record);
                    ASSERT_EQ((*series)[i].spectrum, (*expected)[i].spectrum);
                    ASSERT_EQ((*series)[i].nearestGap, (*expected)[i].nearestGap);
                    ASSERT_EQ(atOnce.seriesSpans(info.get()).begin(i), ticksOf((*series)[i].record->beginTime));
                }
            }
        }
    }
}

/// The trapezoids of the density over the logarithm of the axis.
double integralOf(const SpectMath::Spectrum &spectrum)
{
    const RealVector &x = spectrum.info->nativePoints(), &c = spectrum.concentrations;
    double sum = 0;
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
        sum += (c[i] + c[i + 1]) / 2 * std::log10(x[i + 1] / x[i]);
    return sum;
}

void expectSummary(const Datastore &store, Datastore::SeriesKey key)
{
    SpectMath::DecadeHistogram expected;
    const auto series = store.series(key);
    for (std::size_t i = 0; series && i < series->size(); ++i) {
        const SpectMath::Spectrum &spectrum = *(*series)[i].spectrum;
        const double decades = store.totalDecades(key)[i];
        if (spectrum.status != 0 || spectrum.concentrations.size() != key->nativePoints().size()) {
            ASSERT_TRUE(std::isnan(decades)) << i;
            continue;
        }
        expected.add(spectrum.concentrations.data().begin(), spectrum.concentrations.size());
        const double total = integralOf(spectrum);
        if (total > 1e-9) {
            ASSERT_NEAR(decades, std::log10(total), 1e-9) << i;
        } else if (total < -1e-9) {
            ASSERT_EQ(decades, -std::numeric_limits<double>::infinity()) << i;
        }
    }
    const SpectMath::DecadeHistogram &histogram = store.histogram(key);
    for (int bin = 0; bin < SpectMath::DecadeHistogram::binCount; ++bin)
        ASSERT_EQ(histogram.count(bin), expected.count(bin)) << bin;
}

TEST(Datastore, what_is_known_of_all_spectra_follows_them)
{
    std::mt19937 random(17);
    const auto makeSpectrum = [&random](const SpectMath::SpectrumInfoPointer &info) {
        const auto spectrum = spectrumOf(info);
        spectrum->status = random() % 5 == 0 ? 2 : 0;
        spectrum->concentrations.resize(random() % 7 == 0 ? 3 : 5);
        for (double &c : spectrum->concentrations)
            c = std::pow(10.0, double(random() % 60) / 10 - 2) * (random() % 6 == 0 ? -1 : 1);
        return spectrum;
    };
    std::vector<SpectMath::SpectrumInfoPointer> infos;
    for (const char *name : {"a", "b"}) {
        auto info = std::make_shared<SpectMath::SpectrumInfo>();
        info->name = name;
        info->scale = SpectMath::DistributionScale::radius;
        info->radii.resize(5);
        for (std::size_t k = 0; k < 5; ++k)
            info->radii[k] = std::pow(1.5, double(k * k));
        info->finish();
        infos.push_back(info);
    }
    Datastore store;
    store.setMaxRecords(60);
    for (int step = 0; step < 600; ++step) {
        const int begin = 10 * step - int(random() % 300) + 1000;
        store.addFullRecord(fullRecord(begin, begin + 5));
        SpectMath::SpectrumPointerList spectra;
        for (const auto &info : infos)
            if (random() % 3 != 0)
                spectra.push_back(makeSpectrum(info));
        const auto result = resultFor(*store.at(int(random() % unsigned(store.size()))), spectra);
        if (step % 3 == 0)
            store.replaceSpectra(result);
        else
            store.addSpectra(result);
        if (step % 40 == 20) { // a file's spectra at once
            std::vector<SpectrumRecord> entries;
            for (int i = 0; i < store.size(); ++i)
                if (random() % 2 == 0)
                    entries.push_back({store.at(i), makeSpectrum(infos[0])});
            store.enterSpectra(std::move(entries));
        }
        if (step % 200 == 150)
            store.removeSpectrum(infos[1].get());
        if (step % 10 != 0)
            continue;
        for (const auto &info : infos)
            expectSummary(store, info.get());
        if (HasFatalFailure())
            return;
    }
}

TEST(Datastore, a_description_lives_as_long_as_its_emptied_series)
{
    Datastore store;
    store.setMaxRecords(1);
    auto info = makeInfo("a");
    const Datastore::SeriesKey key = info.get();
    const std::weak_ptr<const SpectMath::SpectrumInfo> watched = info;
    store.addFullRecord(fullRecord(10, 11));
    store.enterSpectrum(store.at(0), spectrumOf(info));
    info.reset();
    store.addFullRecord(fullRecord(20, 21));
    ASSERT_TRUE(store.series(key)->empty());
    EXPECT_FALSE(watched.expired()) << "another description could come to have the series' key";
    store.removeSpectrum(key);
    EXPECT_TRUE(watched.expired());
}

} // namespace
