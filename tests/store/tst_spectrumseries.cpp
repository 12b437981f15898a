#include "store/storecontents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace StoreContents;

TEST(SpectrumSeries, GapsOnlyGetSmaller)
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

TEST(SpectrumSeries, SpectraAreReplacedAddedAndRemoved)
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

    store.addSpectra(resultFor(*record, {nullptr, std::make_shared<SpectMath::Spectrum>()}));
    EXPECT_EQ(record->spectra.size(), 3u) << "a spectrum without description is ignored";
    EXPECT_EQ(listener.take(), "+1:20:4 +1:20:4 +1:20:4");

    store.replaceSpectra(resultFor(*record, {first}, true));
    EXPECT_EQ(record->spectra, (SpectMath::SpectrumPointerList{first}));
    EXPECT_TRUE(record->spectraProvisional);
    EXPECT_EQ(store.series(b.get())->front().spectrum, third) << "entries of former spectra stay";

    store.addSpectra(resultFor(*store.at(2), {spectrumOf(b), spectrumOf(a), spectrumOf(b)}));
    store.replaceSpectra(resultFor(*fullRecord(20, 31), {first}));
    EXPECT_EQ(listener.take(), "+1:20:4 +2:30:4") << "an unknown head is silent";

    store.removeSpectrum(b.get());
    EXPECT_EQ(listener.take(), "+2:30:4");
    EXPECT_EQ(store.at(2)->spectra.size(), 1u);
    EXPECT_EQ(store.series(b.get()), nullptr);
    store.removeSpectrum(b.get());
    EXPECT_EQ(listener.take(), "");
}

TEST(SpectrumSeries, ManySpectraAtOnceAreAsEachInTurn)
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

TEST(SpectrumSeries, WhatIsKnownOfAllSpectraFollowsThem)
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
    const std::vector<SpectMath::SpectrumInfoPointer> infos{testInfo("a", testGrid(5)),
                                                            testInfo("b", {1, 2, 2.1, 9, 7})};
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

TEST(SpectrumSeries, ADescriptionLivesAsLongAsItsEmptiedSeries)
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
