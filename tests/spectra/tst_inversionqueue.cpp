#include "spectra/inversionqueue.h"

#include "inverterfixture.h"
#include "log/logger.h"
#include "spectra/inverterfiles.h"
#include "spectra/recordinversion.h"
#include "support/instrument.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <random>

using namespace SpectMath;

namespace {

InverterPointer inverterOf(const QByteArray &name, const QByteArray &extra = QByteArray())
{
    return readInverterText(inverterText(4, name, extra), "test.sinv", unitTable());
}

std::shared_ptr<Spectrometer::RecordMetadata> makeMetadata()
{
    auto metadata = testMetadata({"ions", "particles", "offset"});
    metadata->electrometerGroups = {{"pos", {0, 4}}, {"neg", {4, 8}}};
    return metadata;
}

Spectrometer::FullRecordPointer makeRecord(int second, int opmode, bool provisional = false)
{
    auto record = std::make_shared<Spectrometer::FullRecord>();
    record->beginTime = recordTimeFromTicks((second + 1) * ticksPerSecond);
    record->endTime = recordTimeFromTicks((second + 2) * ticksPerSecond);
    record->opmode = opmode;
    record->provisional = provisional;
    record->currents = RealVector(8);
    record->currentVariances = RealVector(8, 0.01);
    std::mt19937 random{unsigned(second)};
    for (double &current : record->currents)
        current = double(random() % 1000) / 100 - 2;
    return record;
}

/// A queue with what comes out of it.
class Inversion : public ::testing::Test {
protected:
    void start(int workers, InverterList inverters)
    {
        queue = std::make_unique<InversionQueue>(std::move(inverters), metadata, workers);
        QObject::connect(queue.get(), &InversionQueue::resultReady,
                         [this](SpectrumRecordPointer r) { results.push_back(r); });
        QObject::connect(queue.get(), &InversionQueue::empty, [this] { ++emptied; });
        QObject::connect(queue.get(), &InversionQueue::stopped, [this] { ++stops; });
    }
    void runUntil(const std::function<bool()> &done)
    {
        QElapsedTimer timer;
        timer.start();
        while (!done() && timer.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        EXPECT_TRUE(done());
    }

    std::shared_ptr<Spectrometer::RecordMetadata> metadata = makeMetadata();
    InverterList both = {inverterOf("ions pos"), inverterOf("ions neg"),
                         inverterOf("particles", "opmode: particles\nelectrometer_group: pos\n")};
    std::unique_ptr<InversionQueue> queue;
    std::vector<SpectrumRecordPointer> results;
    int emptied = 0;
    int stops = 0;
};

TEST_F(Inversion, EveryRecordComesOutOnceAndAlikeForAnyNumberOfWorkers)
{
    constexpr int count = 1500;
    for (const int workers : {1, 2, 8}) {
        results.clear();
        emptied = 0;
        start(workers, both);
        for (int i = 0; i < count; ++i)
            queue->addJob(makeRecord(i, i % 3));
        runUntil([this] { return emptied > 0; });
        EXPECT_EQ(emptied, 1);
        ASSERT_EQ(results.size(), std::size_t(count));
        std::vector<bool> seen(count, false);
        for (const auto &result : results) {
            const int second = int(ticksOf(result->beginTime) / ticksPerSecond) - 1;
            EXPECT_FALSE(seen[std::size_t(second)]);
            seen[std::size_t(second)] = true;
            const auto record = makeRecord(second, second % 3);
            const std::size_t expected[] = {2, 1, 0};
            ASSERT_EQ(result->spectra.size(), expected[second % 3]);
            for (std::size_t k = 0; k < result->spectra.size(); ++k) {
                const InverterPointer &inverter = second % 3 == 1 ? both[2] : both[k];
                const auto alone = invertRecord(*inverter, *record, *metadata);
                EXPECT_EQ(result->spectra[k]->info, inverter->info());
                // Bit for bit, since a not-a-number is a result as well.
                EXPECT_EQ(std::memcmp(result->spectra[k]->concentrations.data().begin(),
                                      alone->concentrations.data().begin(), 4 * sizeof(double)),
                          0);
            }
        }
        queue.reset();
    }
}

TEST_F(Inversion, RecordsThatNoInverterFitsComeOutEmpty)
{
    start(2, {});
    queue->addJob(makeRecord(0, 0));
    auto interim = makeRecord(1, 0);
    interim->interim = true;
    queue->addJob(interim);
    auto unknown = makeRecord(2, 7);
    unknown->provisional = true;
    queue->addJob(unknown);
    runUntil([this] { return results.size() == 2; });
    EXPECT_TRUE(results[0]->spectra.empty());
    EXPECT_TRUE(results[0]->provisional != results[1]->provisional);
}

TEST_F(Inversion, AnInverterThatThrowsCostsOnlyItself)
{
    start(1, {inverterOf("ions", "opmode: ions\nelectrometer_group: absent\n"), inverterOf("ions neg")});
    queue->addJob(makeRecord(0, 0));
    runUntil([this] { return emptied == 1; });
    ASSERT_EQ(results.size(), 1u);
    ASSERT_EQ(results[0]->spectra.size(), 1u);
    EXPECT_EQ(results[0]->spectra[0]->info->name, "ions neg");
}

TEST_F(Inversion, ProvisionalRecordsMakeWay)
{
    start(1, both);
    queue->addJob(makeRecord(0, 0)); // taken by the worker
    queue->addJob(makeRecord(1, 0, true));
    queue->addJob(makeRecord(2, 0, true));
    EXPECT_EQ(queue->waitingJobs(), 2);
    queue->addJob(makeRecord(3, 0));
    EXPECT_EQ(queue->waitingJobs(), 1);
    queue->addJob(makeRecord(4, 0, true)); // waits behind a better one
    EXPECT_EQ(queue->waitingJobs(), 2);
    runUntil([this] { return emptied == 1; });
    EXPECT_EQ(results.size(), 3u);
}

/// Holds workers at records of mode 2, whose inverter complains, until it is opened.
class Gate {
public:
    Gate()
    {
        Log::RootLogger::instance().setFilter([this](const Log::Entry &entry) {
            if (!entry.message.startsWith("Inversion error"))
                return true;
            ++stuck;
            const std::lock_guard<std::mutex> lock(m_mutex);
            return false;
        });
    }
    ~Gate()
    {
        m_closed.lock(); // behind all that threads did in the filter
        Log::RootLogger::instance().setFilter({});
    }
    void open() { m_closed.unlock(); }

    const InverterList inverters{inverterOf("stuck", "opmode: offset\nelectrometer_group: absent\n")};
    std::atomic<int> stuck{0};

private:
    std::mutex m_mutex;
    std::unique_lock<std::mutex> m_closed{m_mutex};
};

TEST_F(Inversion, RecordsWithinTheWorkersReachWaitAndMakeWayUntilTheyAreBegun)
{
    Gate gate;
    start(2, gate.inverters);
    int length = -1;
    QObject::connect(queue.get(), &InversionQueue::queueStatus, [&](int l, int) { length = l; });
    for (int i = 0; i < 1000; ++i)
        queue->addJob(makeRecord(i, 2, i > 1));
    runUntil([&] { return gate.stuck == 2; });
    QCoreApplication::processEvents();
    queue->statusUpdateTimeout();
    EXPECT_EQ(length, 998);
    queue->addJob(makeRecord(1000, 2));
    EXPECT_EQ(queue->waitingJobs(), 1);
    queue->addJob(makeRecord(1001, 2, true));
    EXPECT_EQ(queue->waitingJobs(), 2) << "behind a better one";
    gate.open();
    runUntil([this] { return emptied == 1; });
    EXPECT_EQ(results.size(), 4u);
}

TEST_F(Inversion, ItsEndWaitsForAllThreadsTogether)
{
    Gate gate;
    start(3, gate.inverters);
    for (int i = 0; i < 3; ++i)
        queue->addJob(makeRecord(i, 2));
    runUntil([&] { return gate.stuck == 3; });
    QVector<QPointer<QThread>> threads;
    for (QThread *thread : queue->findChildren<QThread *>())
        threads << thread;
    EXPECT_EQ(threads.size(), 3);
    QElapsedTimer timer;
    timer.start();
    queue.reset();
    EXPECT_GE(timer.elapsed(), 4900);
    EXPECT_LT(timer.elapsed(), 9000);
    gate.open();
    runUntil([&] { return std::all_of(threads.begin(), threads.end(), [](const auto &t) { return t.isNull(); }); });
}

TEST_F(Inversion, StopWaitsForTheJobsAndClearDropsThem)
{
    start(2, both);
    queue->stop();
    EXPECT_EQ(stops, 1) << "at once when nothing is busy";

    start(2, both);
    for (int i = 0; i < 500; ++i)
        queue->addJob(makeRecord(i, 0));
    queue->stop();
    queue->stop();
    runUntil([this] { return stops == 2; });
    EXPECT_EQ(results.size(), 500u);
    EXPECT_EQ(emptied, 1);

    results.clear();
    start(2, both);
    for (int i = 0; i < 20000; ++i)
        queue->addJob(makeRecord(i, 0));
    queue->clear();
    queue->stop();
    runUntil([this] { return stops == 3; });
    EXPECT_LT(results.size(), 2000u);
    EXPECT_EQ(queue->waitingJobs(), 0);
}

TEST_F(Inversion, StatusTellsLengthAndSpeed)
{
    start(1, both);
    int length = -1, speed = -1;
    QObject::connect(queue.get(), &InversionQueue::queueStatus, [&](int l, int s) { length = l, speed = s; });
    for (int i = 0; i < 40; ++i)
        queue->addJob(makeRecord(i, 0));
    runUntil([this] { return emptied == 1; });
    queue->statusUpdateTimeout();
    EXPECT_EQ(length, 0);
    EXPECT_EQ(speed, 40);
    queue->statusUpdateTimeout();
    EXPECT_EQ(speed, 0);
}

TEST_F(Inversion, AQueueMayGoAtAnyMoment)
{
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        start(1 + int(random() % 4), both);
        const int jobs = int(random() % 400);
        for (int i = 0; i < jobs; ++i) {
            queue->addJob(makeRecord(i, int(random() % 3)));
            if (random() % 50 == 0)
                QCoreApplication::processEvents();
            if (random() % 200 == 0)
                queue->clear();
        }
        if (random() % 2)
            queue->stop();
        queue.reset();
    }
}

} // namespace
