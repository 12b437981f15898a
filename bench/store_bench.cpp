// What a store of 500 000 records costs: resident memory against the payload, merging, searching, discarding a
// spectrum.

#include "store/datastore.h"
#include "support/measuring.h"

#include <fstream>

#include <unistd.h>

namespace {

constexpr int electrometers = 42;
constexpr int variables = 12;
constexpr std::size_t points = 40;
constexpr double payloadPerRecord = 8.0 * (4 * electrometers + variables + 2 * 2 * points); // 2720 bytes

double residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    double total = 0, resident = 0;
    statm >> total >> resident;
    return resident * double(sysconf(_SC_PAGESIZE));
}

/// In place: a vector that is assigned leaves the slab memory of its temporary behind.
void fill(RealVector &vector, std::size_t size, double value)
{
    vector.resize(size, false);
    std::fill(vector.begin(), vector.end(), value);
}

std::shared_ptr<SpectMath::Spectrum> makeFilledSpectrum(const SpectMath::SpectrumInfoPointer &info, double value)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->info = info;
    fill(spectrum->concentrations, points, value);
    spectrum->covariances.resize(points, points, 0, 0, false);
    for (std::size_t i = 0; i < points; ++i)
        spectrum->covariances(i, i) = value;
    spectrum->status = 0;
    return spectrum;
}

/// As readers make them: the values' row first, the rows of the spectra later.
std::shared_ptr<Record> makeFilledRecord(int number)
{
    auto record = makeRecord();
    record->beginTime = recordTimeFromTicks((1 + std::int64_t(number)) * 10 * ticksPerSecond);
    record->endTime = record->beginTime + Ticks(10 * ticksPerSecond);
    record->midTime = Spectrometer::middleOf(record->beginTime, record->endTime);
    fill(record->variables, variables, number);
    for (RealVector *v : {&record->voltages, &record->currents, &record->currentVariances, &record->rawCurrents})
        fill(*v, electrometers, number);
    return record;
}

struct FilledStore {
    Datastore store;
    SpectMath::SpectrumInfoPointer infos[2] = {std::make_shared<SpectMath::SpectrumInfo>(),
                                               std::make_shared<SpectMath::SpectrumInfo>()};

    FilledStore(int days, int perDay)
    {
        store.setLimitRecords(false);
        for (int day = 0; day < days; ++day) {
            std::vector<std::shared_ptr<Record>> records;
            for (int i = 0; i < perDay; ++i)
                records.push_back(makeFilledRecord(day * perDay + i));
            store.mergeRecords(std::move(records));
            for (const auto &info : infos) {
                for (int i = day * perDay; i < (day + 1) * perDay; ++i) {
                    const auto &record = store.at(i);
                    if (record->spectra.empty())
                        record->spectra.reserve(2);
                    record->spectra.push_back(makeFilledSpectrum(info, i));
                    store.enterSpectrum(record, record->spectra.back());
                }
            }
        }
        for (const auto &info : infos)
            benchmark::DoNotOptimize(store.seriesSpans(info.get()).size() + store.recordSpans().size());
    }
};

void memoryOf500000Records(benchmark::State &state)
{
    for (auto _ : state) {
        const double before = residentBytes();
        const FilledStore filled(50, 10000);
        const double used = residentBytes() - before;
        state.counters["bytes_per_record"] = used / 500000;
        state.counters["of_payload"] = used / 500000 / payloadPerRecord;
    }
}
BENCHMARK(memoryOf500000Records)->Iterations(1)->Unit(benchmark::kMillisecond);

/// The second mode of every day goes between the records of the first.
void mergeSecondMode(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        Datastore store;
        store.setLimitRecords(false);
        std::vector<std::shared_ptr<Record>> even, odd;
        for (int i = 0; i < count; ++i) {
            auto record = makeRecord();
            record->beginTime = record->endTime = recordTimeFromTicks(i + 1);
            (i % 2 ? odd : even).push_back(record);
        }
        store.mergeRecords(std::move(even));
        benchmark::DoNotOptimize(store.recordSpans().size());
        state.ResumeTiming();
        store.mergeRecords(std::move(odd));
        benchmark::DoNotOptimize(store.recordSpans().size());
        state.PauseTiming();
        if (store.size() != count)
            state.SkipWithError("records lost");
        state.ResumeTiming();
    }
}
BENCHMARK(mergeSecondMode)->Arg(86400)->Arg(500000)->Unit(benchmark::kMillisecond);

void searchAtRandom(benchmark::State &state)
{
    Datastore store;
    store.setLimitRecords(false);
    std::vector<std::shared_ptr<Record>> records;
    for (int i = 0; i < 500000; ++i) {
        records.push_back(makeRecord());
        records.back()->beginTime = records.back()->endTime = recordTimeFromTicks(10 * (i + 1));
    }
    store.mergeRecords(std::move(records));
    benchmark::DoNotOptimize(store.recordSpans().size());
    std::uint64_t x = 1;
    for (auto _ : state) {
        x = x * 6364136223846793005u + 1442695040888963407u;
        benchmark::DoNotOptimize(store.lowerBoundIndex(recordTimeFromTicks(std::int64_t((x >> 33) % 5000000))));
    }
}
BENCHMARK(searchAtRandom);

/// Against walking the records once, looking for spectra of that description.
void discardSpectrum(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto owner = std::make_unique<FilledStore>(50, 10000);
        FilledStore &filled = *owner;
        std::int64_t told = 0;
        QObject::connect(&filled.store, &Datastore::updated, &filled.store, [&told] { ++told; });
        const double begin = microseconds(CLOCK_MONOTONIC);
        std::size_t spectra = 0;
        for (const auto &record : filled.store.records()) {
            for (const auto &spectrum : record->spectra)
                spectra += spectrum->info == filled.infos[0];
        }
        benchmark::DoNotOptimize(spectra);
        state.counters["walk_ms"] = (microseconds(CLOCK_MONOTONIC) - begin) * 1e-3;
        state.ResumeTiming();
        filled.store.removeSpectrum(filled.infos[0].get());
        state.PauseTiming();
        state.counters["told"] = double(told);
        owner.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(discardSpectrum)->Iterations(2)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
