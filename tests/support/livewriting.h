#pragma once

#include "support/growingfolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include <time.h>

/// The turns of an event loop, in milliseconds: by the clock, and by the work of the thread alone, since on a busy
/// machine others have their share of the first.
struct LoopTurns {
    double longest = 0, longestWork = 0;
    double percentile999 = 0;
    std::size_t count = 0;
};

/// Has an instrument write 200 records a second for that time, on a thread, and turns the event loop meanwhile.
inline LoopTurns turnWhileWriting(GrowingFolder &folder, int seconds)
{
    std::atomic<bool> isOver{false};
    std::thread writer([&] {
        QElapsedTimer clock;
        clock.start();
        for (int written = 0; clock.elapsed() < seconds * 1000;) {
            const int due = int(clock.elapsed() / 5);
            folder.write(due - written);
            written = due;
            folder.flush(false);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        folder.flush(true);
        isOver = true;
    });
    const auto workTime = [] {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) * 1e-6;
    };
    LoopTurns turns;
    std::vector<double> all;
    QElapsedTimer sinceTurn;
    double work = workTime();
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        turns.longestWork = std::max(turns.longestWork, workTime() - work);
        const double turn = double(sinceTurn.nsecsElapsed()) * 1e-6;
        if (turn > 0.1) // others have no work, and are millions
            all.push_back(turn);
        sinceTurn.restart();
        work = workTime();
    });
    sinceTurn.start();
    pulse.start(0);
    while (!isOver)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    writer.join();
    all.push_back(0);
    std::sort(all.begin(), all.end());
    turns.count = all.size();
    turns.longest = all.back();
    turns.percentile999 = all[all.size() * 999 / 1000];
    return turns;
}
