// Records that come in while six views are open.

#include "support/measuring.h"
#include "timeseries/browserwindow.h"

#include <QElapsedTimer>
#include <QEventLoop>

#include <numeric>

namespace {

/// 200 records a second, each with its spectra, for a minute, in packs of a twentieth of a second; a zero timer notes
/// the time between two turns of the event loop. The view shows the last hours, the feed and some room behind it. With
/// argument 1 the store is full and drops a record for each that comes in.
void liveFeed(benchmark::State &state)
{
    constexpr int recordsPerSecond = 200, packMilliseconds = 50, seconds = 60;
    BenchStore data(500'000);
    BrowserWindow window(data);
    window.addSixViews();
    const bool full = state.range(0) != 0;
    if (full) {
        data.store().setMaxRecords(data.count());
        data.store().setLimitRecords(true);
    }
    for (auto _ : state) {
        const RecordTime seenFrom = data.end() - Ticks(20'000 * BenchStore::recordTicks);
        const RecordTime seenUntil = data.end() + Ticks(15'000 * BenchStore::recordTicks);
        window.browser().fitTimescale(seenFrom, seenUntil);
        settle();
        std::vector<double> turns;
        QEventLoop loop;
        QElapsedTimer sinceStart, sinceTurn;
        int sent = 0;
        QTimer feed, turn;
        QObject::connect(&feed, &QTimer::timeout, [&] {
            const auto due = int(sinceStart.elapsed() * recordsPerSecond / 1000);
            for (; sent < due; ++sent)
                data.addLive();
            if (sinceStart.elapsed() >= seconds * 1000)
                loop.quit();
        });
        QObject::connect(&turn, &QTimer::timeout, [&] {
            turns.push_back(double(sinceTurn.nsecsElapsed()) * 1e-6);
            sinceTurn.restart();
        });
        sinceStart.start();
        sinceTurn.start();
        feed.start(packMilliseconds);
        turn.start(0);
        loop.exec();
        state.counters["records"] = sent;
        state.counters["longest_ms"] = percentile(turns, 1);
        state.counters["99%_ms"] = percentile(turns, 0.99);
        // Turns without work are short and many: what those take that have some.
        std::vector<double> busy;
        std::copy_if(turns.begin(), turns.end(), std::back_inserter(busy), [](double t) { return t > 0.1; });
        state.counters["busy_turns"] = double(busy.size());
        state.counters["busy_s"] = std::accumulate(busy.begin(), busy.end(), 0.0) * 1e-3;
        state.counters["99%_of_busy_ms"] = percentile(busy, 0.99);
    }
}
BENCHMARK(liveFeed)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
