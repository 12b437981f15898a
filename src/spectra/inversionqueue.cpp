#include "spectra/inversionqueue.h"

#include "spectra/inversionworker.h"
#include "util/workerthread.h"

#include <QElapsedTimer>

#include <algorithm>

namespace SpectMath {

namespace {

constexpr int statusIntervalMs = 1000;
constexpr unsigned long longestWaitForThreadMs = 5000;
/// Results are taken for this long before the event loop gets its turn again.
constexpr qint64 longestDeliveryMs = 4;
constexpr std::size_t heldBatches = 2;

} // namespace

#define ASSERT_OWN_THREAD() Q_ASSERT(QObject::thread() == QThread::currentThread())

InversionQueue::InversionQueue(InverterList inverters, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                               int workerCount, QObject *parent)
    : QObject(parent), m_inverters(std::make_shared<const InverterList>(std::move(inverters))),
      m_metadata(std::move(metadata)), m_log(QStringLiteral("inversion")),
      m_mailbox(std::make_shared<InversionMailbox>(this))
{
    if (workerCount < 1)
        workerCount = std::max(QThread::idealThreadCount(), 1);
    for (int i = 0; i < workerCount; ++i)
        startWorker(i);
    m_statusTimer.setInterval(statusIntervalMs);
    connect(&m_statusTimer, &QTimer::timeout, this, &InversionQueue::statusUpdateTimeout);
    m_statusTimer.start();
    if (m_inverters->empty())
        m_log.log(Log::Warning, QStringLiteral("No inverters specified"));
}

InversionQueue::~InversionQueue()
{
    m_mailbox->detach();
    for (Worker &worker : m_workers) {
        if (worker.worker)
            worker.worker->drop();
        if (worker.thread)
            worker.thread->quit();
    }
    for (Worker &worker : m_workers) {
        if (worker.thread && !worker.thread->wait(longestWaitForThreadMs)) {
            m_log.log(Log::Error, QStringLiteral("Possible software bug: failed to properly stop an inversion thread"));
            worker.thread->setParent(nullptr); // a running thread can't be deleted, nor what runs on it
            continue;
        }
        delete worker.worker;
    }
}

void InversionQueue::startWorker(int index)
{
    auto *thread = new WorkerThread(this);
    auto *worker = new InversionWorker(index, m_mailbox, m_inverters, m_metadata);
    worker->moveToThread(thread);
    Worker entry;
    entry.worker = worker;
    entry.thread = thread;
    m_workers.push_back(entry);
    thread->start(QThread::InheritPriority);
}

bool InversionQueue::isBusy() const
{
    return std::any_of(m_workers.begin(), m_workers.end(), [](const Worker &worker) { return worker.held > 0; });
}

InversionQueue::Worker *InversionQueue::workerByIndex(int index)
{
    const auto found = std::find_if(m_workers.begin(), m_workers.end(), [index](const Worker &worker) {
        return worker.worker && worker.worker->index() == index;
    });
    return found == m_workers.end() ? nullptr : &*found;
}

/// The first worker with nothing to do, or null. Workers that are gone, or whose thread is, leave the list.
InversionQueue::Worker *InversionQueue::idleWorker()
{
    bool clean = false;
    Worker *idle = nullptr;
    for (Worker &worker : m_workers) {
        if (!worker.worker) {
            m_log.log(Log::Debug,
                      QStringLiteral("Possible software bug: A inversion worker has been deleted unexpectedly"));
            clean = true;
        } else if (!worker.thread || !worker.thread->isRunning()) {
            delete worker.worker;
            m_log.log(Log::Error,
                      QStringLiteral("Software bug: data inversion has stopped, because an inversion thread has died"));
            clean = true;
        } else if (worker.held == 0) {
            idle = &worker;
            break;
        }
    }
    if (!clean)
        return idle;
    const int idleIndex = idle ? idle->worker->index() : -1;
    m_workers.erase(
        std::remove_if(m_workers.begin(), m_workers.end(), [](const Worker &worker) { return !worker.worker; }),
        m_workers.end());
    return workerByIndex(idleIndex);
}

void InversionQueue::addJob(const Spectrometer::FullRecordPointer &record)
{
    ASSERT_OWN_THREAD();
    if (record->interim || m_workers.isEmpty())
        return;
    Worker *idle = idleWorker();
    if (m_workers.isEmpty())
        return;
    m_jobs.push_back(record);
    if (idle && m_jobs.size() == 1) {
        give(*idle, 1);
        return;
    }
    ++m_jobsAdded;
    if (!record->provisional)
        while (m_jobs.front()->provisional) // ends at the newcomer at the latest
            m_jobs.pop_front();
    if (m_jobs.size() >= std::size_t(largestBatch))
        for (Worker &worker : m_workers)
            fill(worker);
}

/// Hands the first `count` waiting jobs to the worker as one batch.
void InversionQueue::give(Worker &worker, int count)
{
    const auto end = m_jobs.begin() + count;
    std::vector<Spectrometer::FullRecordPointer> batch(std::make_move_iterator(m_jobs.begin()),
                                                       std::make_move_iterator(end));
    m_jobs.erase(m_jobs.begin(), end);
    worker.held += count;
    worker.batches.push_back(count);
    worker.worker->give(std::move(batch));
}

/// Tops up what the worker holds. Towards the end batches get smaller, so that all workers end at about the same time.
void InversionQueue::fill(Worker &worker)
{
    while (!m_jobs.empty() && worker.worker && worker.batches.size() < heldBatches) {
        const int share = int(m_jobs.size() / (2 * std::size_t(m_workers.size())));
        give(worker, std::min(std::clamp(share, 1, largestBatch), int(m_jobs.size())));
    }
}

void InversionQueue::clear()
{
    ASSERT_OWN_THREAD();
    m_jobs.clear();
    for (Worker &worker : m_workers)
        if (worker.worker)
            worker.worker->drop();
}

void InversionQueue::stop()
{
    ASSERT_OWN_THREAD();
    if (m_state != Running)
        return;
    m_state = Stopping;
    if (!isBusy()) {
        m_state = Stopped;
        Q_EMIT stopped();
    }
}

void InversionQueue::takeBack(int workerIndex, int records)
{
    Worker *worker = workerByIndex(workerIndex);
    if (!worker)
        return;
    worker->held -= records;
    while (records > 0 && !worker->batches.empty()) {
        const int taken = std::min(records, worker->batches.front());
        worker->batches.front() -= taken;
        records -= taken;
        if (worker->batches.front() == 0)
            worker->batches.pop_front();
    }
    fill(*worker);
}

void InversionQueue::takeResults()
{
    ASSERT_OWN_THREAD();
    QElapsedTimer timer;
    timer.start();
    FinishedJobs delivery;
    while (m_mailbox->take(delivery)) {
        takeBack(delivery.workerIndex, delivery.records); // first, so that the worker isn't kept waiting
        for (const SpectrumRecordPointer &result : delivery.results)
            workerFinished(delivery.workerIndex, result);
        if (announceEnd())
            return;
        if (timer.elapsed() >= longestDeliveryMs) {
            m_mailbox->wake();
            return;
        }
    }
}

void InversionQueue::workerFinished(int /*workerIndex*/, const SpectrumRecordPointer &record)
{
    ASSERT_OWN_THREAD();
    ++m_jobsDone;
    Q_EMIT resultReady(record);
}

/// Tells that nothing is left to do; whoever hears it may let go of the queue, so it comes last.
bool InversionQueue::announceEnd()
{
    if (!m_jobs.empty() || isBusy())
        return false;
    const QPointer<InversionQueue> self(this);
    Q_EMIT empty();
    if (self && m_state == Stopping) {
        m_state = Stopped;
        Q_EMIT stopped();
    }
    return true;
}

void InversionQueue::statusUpdateTimeout()
{
    ASSERT_OWN_THREAD();
    Q_EMIT queueStatus(waitingJobs(), m_jobsDone);
    m_jobsAdded = 0;
    m_jobsDone = 0;
}

} // namespace SpectMath
