// What reinverting many records costs beside the inversions: the window's run, whose results go into a store with views
// open, and the ordered inversion of the command line; and what discarding a spectrum costs.
//
// The machine may have other work, so times are those of processors, not of the clock, where a figure allows it: w is
// the time of one record's inversion on one thread, c the main thread's time for each record. Two workers can be at
// most 2w/(w+c) times as fast as one, for on two processors the main thread takes its share from them.

#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/morvantide/reinversion.h"
#include "gui/morvantide/slowrelease.h"
#include "spectra/instrument_model.h"
#include "spectra/orderedinversion.h"
#include "store/datastore.h"
#include "support/measuring.h"
#include "util/workerthread.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

namespace {

constexpr int pointCount = 50;
constexpr int differentRecords = 500;

/// A store of records a minute apart, and the inverter that fits them.
struct Run {
    Run(int count, std::size_t m, std::size_t n)
    {
        InstrumentModel model(m, n, pointCount, 17);
        model.background = 0.5;
        model.settings.negRemoveIterations = 3;
        auto info = std::make_shared<SpectMath::SpectrumInfo>();
        info->name = QStringLiteral("ions neg");
        info->opmode = QStringLiteral("ions");
        info->hash = QStringLiteral("aa");
        info->scale = SpectMath::DistributionScale::radius;
        info->radii.resize(pointCount);
        for (int k = 0; k < pointCount; ++k)
            info->radii[std::size_t(k)] = std::pow(10.0, k * 0.04);
        info->finish();
        inverters.push_back(std::make_shared<SpectMath::Inverter>(model.settings, info));

        metadata->opmodes << Opmode(0, QStringLiteral("ions"));
        metadata->totalElectrometers = int(m);
        for (int i = 0; i < int(m); ++i)
            metadata->electrometerNames << QString::number(i);
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        variable->name = variable->humanname = QStringLiteral("temperature");
        metadata->variables << variable;
        metadata->variableCount = 1;

        std::vector<RealVector> signals(differentRecords), variances(differentRecords);
        for (std::size_t i = 0; i < differentRecords; ++i)
            model.measure(signals[i], variances[i]);
        store->setLimitRecords(false);
        for (int i = 0; i < count; ++i) {
            auto record = std::make_shared<Spectrometer::FullRecord>();
            record->beginTime = recordTimeFromTicks(18'000 * ticksPerDay + i * 60 * ticksPerSecond);
            record->endTime = record->beginTime + Ticks(55 * ticksPerSecond);
            record->opmode = 0;
            record->currents = signals[std::size_t(i % differentRecords)];
            record->currentVariances = variances[std::size_t(i % differentRecords)];
            record->variables = RealVector(1, i % 100);
            store->addFullRecord(record);
        }
    }

    /// Processor time of one record's inversion, in us.
    double oneInversion() const
    {
        const auto ignore = [](int, const QString &) {};
        const double begin = microseconds(CLOCK_THREAD_CPUTIME_ID);
        constexpr int repeats = 4;
        for (int i = 0; i < repeats * differentRecords; ++i)
            benchmark::DoNotOptimize(
                SpectMath::invertRecord(inverters, *store->at(i % differentRecords), *metadata, ignore));
        return (microseconds(CLOCK_THREAD_CPUTIME_ID) - begin) / (repeats * differentRecords);
    }

    std::shared_ptr<Spectrometer::RecordMetadata> metadata = std::make_shared<Spectrometer::RecordMetadata>();
    SpectMath::InverterList inverters;
    std::shared_ptr<Datastore> store = std::make_shared<Datastore>();
};

struct QueueTimes {
    double clock; ///< us for each record
    double main;  ///< processor time of the main thread, likewise
    double all;   ///< and of the process
};

/// Everything through the queue and into the store, as the window does it.
QueueTimes runQueue(Run &run, int workers)
{
    run.store->removeSpectrum(run.inverters.front()->info().get());
    Reinversion reinversion;
    reinversion.setWorkerCount(workers);
    QEventLoop loop;
    QObject::connect(&reinversion, &Reinversion::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    const double clock = microseconds(CLOCK_MONOTONIC), main = microseconds(CLOCK_THREAD_CPUTIME_ID),
                 all = microseconds(CLOCK_PROCESS_CPUTIME_ID);
    reinversion.start(run.store, run.metadata, run.inverters);
    loop.exec();
    const double records = run.store->size();
    return {(microseconds(CLOCK_MONOTONIC) - clock) / records, (microseconds(CLOCK_THREAD_CPUTIME_ID) - main) / records,
            (microseconds(CLOCK_PROCESS_CPUTIME_ID) - all) / records};
}

/// Main thread's time for one call that another thread queues, in us.
double bareQueuedCall()
{
    constexpr int calls = 100000;
    QObject receiver, sender;
    WorkerThread thread;
    sender.moveToThread(&thread);
    thread.start();
    QEventLoop loop;
    int received = 0;
    const double begin = microseconds(CLOCK_THREAD_CPUTIME_ID);
    QMetaObject::invokeMethod(&sender, [&] {
        for (int i = 0; i < calls; ++i) {
            auto payload = std::make_shared<int>(i);
            QMetaObject::invokeMethod(
                &receiver,
                [&, payload] {
                    received += *payload >= 0;
                    if (received == calls)
                        loop.quit();
                },
                Qt::QueuedConnection);
        }
    });
    loop.exec();
    const double taken = microseconds(CLOCK_THREAD_CPUTIME_ID) - begin;
    thread.quit();
    thread.wait();
    return taken / calls;
}

/// A browser of six views, one of which shows the new spectra as colours and one their total.
std::unique_ptr<Tsb::TimeSeriesBrowser> openViews(Run &run)
{
    auto uiInfo = std::make_shared<UiInfo>();
    uiInfo->setData(run.metadata, {run.inverters.front()->info()});
    uiInfo->publish();
    auto browser = std::make_unique<Tsb::TimeSeriesBrowser>(uiInfo);
    browser->resize(1400, 900);
    browser->setDatastore(run.store.get());
    browser->addDefaultStack();
    for (int channel = 0; browser->views().size() < 6; ++channel)
        browser->addElectrometerPlot(channel);
    browser->show();
    browser->fitTimescale(run.store->at(0)->beginTime, run.store->at(run.store->size() - 1)->endTime);
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 100);
    return browser;
}

void queueSpeed(benchmark::State &state)
{
    Run run(20000, std::size_t(state.range(0)), std::size_t(state.range(1)));
    const auto views = state.range(2) ? openViews(run) : nullptr;
    std::vector<double> w, c, reached, needed, ratio;
    for (auto _ : state) {
        w.push_back(run.oneInversion());
        const QueueTimes one = runQueue(run, 1), two = runQueue(run, 2);
        c.push_back(two.main);
        reached.push_back(one.clock / two.clock / (2 * w.back() / (w.back() + two.main)));
        needed.push_back((w.back() + two.main) / two.all);
        ratio.push_back(two.main / bareQueuedCall());
    }
    state.counters["w_us"] = median(w);
    state.counters["c_us"] = median(c);
    state.counters["c_per_bare_call"] = median(ratio);
    // By the clock only where nothing else runs; by the processors' time without what both may idle.
    state.counters["of_possible_by_clock"] = median(reached);
    state.counters["of_possible_by_processor"] = median(needed);
}
BENCHMARK(queueSpeed)
    ->ArgNames({"m", "n", "views"})
    ->Args({25, 30, 0})
    ->Args({42, 60, 0})
    ->Args({25, 30, 6})
    ->Args({42, 60, 6})
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// How long the window is deaf while 100 000 records are inverted: between two turns of the event loop, as a timer sees
/// them that is due in each. Turns without anything to do are left out. By the clock a turn also holds what other
/// programs took from it.
void turnsOfTheEventLoop(benchmark::State &state)
{
    constexpr double idleTurn = 20; // us
    Run run(100000, std::size_t(state.range(0)), std::size_t(state.range(1)));
    const auto views = openViews(run);
    std::vector<double> byClock, byProcessor;
    double clock = 0, processor = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        const double clockNow = microseconds(CLOCK_MONOTONIC), processorNow = microseconds(CLOCK_THREAD_CPUTIME_ID);
        if (clock > 0 && processorNow - processor > idleTurn) {
            byClock.push_back((clockNow - clock) / 1000);
            byProcessor.push_back((processorNow - processor) / 1000);
        }
        clock = clockNow;
        processor = processorNow;
    });
    for (auto _ : state) {
        timer.start(0);
        runQueue(run, 0);
        timer.stop();
    }
    state.counters["turns"] = double(byClock.size());
    state.counters["longest_ms"] = percentile(byClock, 1);
    state.counters["longest_cpu_ms"] = percentile(byProcessor, 1);
    state.counters["p99_ms"] = percentile(byClock, 0.99);
    state.counters["p99_cpu_ms"] = percentile(byProcessor, 0.99);
}
BENCHMARK(turnsOfTheEventLoop)
    ->ArgNames({"m", "n"})
    ->Args({25, 30})
    ->Args({42, 60})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// Gives each record a spectrum without inverting anything.
void fillSpectra(Run &run)
{
    const SpectMath::SpectrumInfoPointer info = run.inverters.front()->info();
    std::vector<SpectrumRecord> entries;
    for (const auto &record : run.store->records()) {
        auto spectrum = SpectMath::makeSpectrum();
        spectrum->info = info;
        spectrum->status = 0;
        spectrum->concentrations = RealVector(pointCount, 100);
        spectrum->covariances = BandMatrix(pointCount, pointCount, 0, 0);
        record->spectra.push_back(spectrum);
        entries.push_back({record, spectrum, 0});
    }
    run.store->enterSpectra(std::move(entries));
}

/// Taking a spectrum out of half a million records while six views watch, in times of walking the records once. Times
/// are the processor's.
void discardWithViews(benchmark::State &state)
{
    Run run(500000, 4, 5);
    const SpectMath::SpectrumInfo *info = run.inverters.front()->info().get();
    fillSpectra(run);
    const auto views = openViews(run);
    SlowRelease released;
    std::vector<double> walk, discard, later, ratio;
    for (auto _ : state) {
        if (!walk.empty()) {
            fillSpectra(run);
            views->setDatastore(nullptr);
            views->setDatastore(run.store.get());
            QApplication::processEvents(QEventLoop::AllEvents, 1000);
        }
        const double begin = microseconds(CLOCK_THREAD_CPUTIME_ID);
        std::size_t found = 0;
        for (const auto &record : run.store->records())
            for (const auto &spectrum : record->spectra)
                found += spectrum->info.get() == info;
        benchmark::DoNotOptimize(found);
        const double walked = microseconds(CLOCK_THREAD_CPUTIME_ID);
        views->setListening(false);
        released.take(run.store->removeSpectrum(info));
        views->setListening(true);
        const double discarded = microseconds(CLOCK_THREAD_CPUTIME_ID);
        do {
            QApplication::processEvents(QEventLoop::AllEvents, 1000);
        } while (!released.isDone());
        walk.push_back((walked - begin) / 1000);
        discard.push_back((discarded - walked) / 1000);
        ratio.push_back(discard.back() / walk.back());
        later.push_back((microseconds(CLOCK_THREAD_CPUTIME_ID) - discarded) / 1000);
    }
    state.counters["walk_ms"] = median(walk);
    state.counters["discard_ms"] = median(discard);
    state.counters["walks"] = median(ratio);
    state.counters["later_ms"] = median(later); // in slices
}
BENCHMARK(discardWithViews)->Iterations(7)->Unit(benchmark::kMillisecond);

/// The inverting part of "morvantide-batch reinvert" on a month of minutes with two jobs: the part of its time that
/// goes into inversions, by the clock and by the processors' time.
void wholeCommand(benchmark::State &state)
{
    const Run run(43200, std::size_t(state.range(0)), std::size_t(state.range(1)));
    constexpr int jobs = 2;
    std::vector<double> byClock, byProcessor;
    for (auto _ : state) {
        const double w = (run.oneInversion() + run.oneInversion()) / 2;
        const double clock = microseconds(CLOCK_MONOTONIC), processor = microseconds(CLOCK_PROCESS_CPUTIME_ID);
        {
            SpectMath::OrderedInversion inversion(run.store->records(), run.inverters, *run.metadata, jobs);
            SpectMath::SpectrumRecordPointer result;
            while (inversion.next(result, [](int, const QString &) {}))
                benchmark::DoNotOptimize(result);
        }
        const double needed = w * run.store->size();
        byClock.push_back(needed / jobs / (microseconds(CLOCK_MONOTONIC) - clock));
        byProcessor.push_back(needed / (microseconds(CLOCK_PROCESS_CPUTIME_ID) - processor));
    }
    state.counters["by_clock"] = median(byClock);
    state.counters["by_processor_time"] = median(byProcessor);
}
BENCHMARK(wholeCommand)
    ->ArgNames({"m", "n"})
    ->Args({25, 30})
    ->Args({42, 60})
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
