#include "spectra/inversionqueue.h"

#include "spectra/inversionjobs.h"
#include "spectra/inversionworker.h"
#include "util/workerthread.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <algorithm>

namespace SpectMath {

namespace {

constexpr int statusIntervalMs = 1000;
constexpr int longestWaitForThreadsMs = 5000;
/// Results are taken for this long before the event loop gets its turn again.
constexpr qint64 longestDeliveryMs = 4;
/// Workers run no further ahead of the results than this for each of them.
constexpr int mostOutstanding = 2 * InversionWorker::largestBatch;

} // namespace

#define ASSERT_OWN_THREAD() Q_ASSERT(QObject::thread() == QThread::currentThread())

InversionQueue::InversionQueue(InverterList inverters, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                               int workerCount, QObject *parent)
    : QObject(parent), m_inverters(std::make_shared<const InverterList>(std::move(inverters))),
      m_metadata(std::move(metadata)), m_log(QStringLiteral("inversion")),
      m_mailbox(std::make_shared<InversionMailbox>(this, "takeResults"))
{
    if (workerCount < 1)
        workerCount = std::max(QThread::idealThreadCount(), 1);
    m_released = std::make_shared<InversionJobs>(workerCount);
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
    m_released->abandon();
    for (const Worker &worker : qAsConst(m_workers))
        if (worker.thread)
            worker.thread->quit();
    const QDeadlineTimer deadline(longestWaitForThreadsMs);
    for (const Worker &worker : qAsConst(m_workers)) {
        if (!worker.thread || worker.thread->wait(deadline)) {
            delete worker.worker;
            continue;
        }
        m_log.log(Log::Error, QStringLiteral("Possible software bug: failed to properly stop an inversion thread"));
        worker.thread->setParent(nullptr); // a running thread can't be deleted, nor what runs on it
        connect(worker.thread, &QThread::finished, worker.worker, &QObject::deleteLater);
        connect(worker.thread, &QThread::finished, worker.thread, &QObject::deleteLater);
    }
}

void InversionQueue::startWorker(int index)
{
    auto *thread = new WorkerThread(this);
    auto *worker = new InversionWorker(index, m_released, m_mailbox, m_inverters, m_metadata);
    worker->moveToThread(thread);
    Worker entry;
    entry.worker = worker;
    entry.thread = thread;
    m_workers.push_back(entry);
    thread->start(QThread::InheritPriority);
}

int InversionQueue::waitingJobs() const
{
    return m_released->size() + int(m_jobs.size());
}

bool InversionQueue::isBusy() const
{
    return std::any_of(m_workers.begin(), m_workers.end(), [](const Worker &worker) { return worker.busy; });
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
        } else if (!worker.busy) {
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
    if (idle && waitingJobs() == 0) {
        m_released->assign(idle->worker->index(), record);
        ++m_outstanding;
        call(*idle);
        return;
    }
    m_jobs.push_back(record);
    ++m_jobsAdded;
    if (!record->provisional)
        dropProvisional();
    // Not at once: until the event loop turns, provisional jobs may be dropped before a worker gets at them.
    if (!m_releasePosted)
        m_releasePosted = QMetaObject::invokeMethod(this, "releaseJobs", Qt::QueuedConnection);
}

/// The provisional ones at the front of what waits, which ends with a better one.
void InversionQueue::dropProvisional()
{
    m_outstanding -= m_released->dropProvisional();
    if (m_released->size() > 0)
        return;
    while (m_jobs.front()->provisional)
        m_jobs.pop_front();
}

void InversionQueue::call(Worker &worker)
{
    worker.busy = true;
    QMetaObject::invokeMethod(worker.worker, "start", Qt::QueuedConnection);
}

/// Moves waiting jobs to where workers take them, as many as may be, and calls idle workers if some lie there.
void InversionQueue::releaseJobs()
{
    m_releasePosted = false;
    const int room = std::max(0, mostOutstanding * m_workers.size() - m_outstanding);
    const int count = std::min(room, int(m_jobs.size()));
    const auto end = m_jobs.begin() + count;
    m_released->add(std::vector(std::make_move_iterator(m_jobs.begin()), std::make_move_iterator(end)));
    m_jobs.erase(m_jobs.begin(), end);
    m_outstanding += count;
    for (Worker &worker : m_workers)
        if (!worker.busy && worker.worker && m_released->size() > 0)
            call(worker);
}

void InversionQueue::clear()
{
    ASSERT_OWN_THREAD();
    m_jobs.clear();
    m_outstanding -= m_released->clear();
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

void InversionQueue::takeResults()
{
    ASSERT_OWN_THREAD();
    QElapsedTimer timer;
    timer.start();
    FinishedJobs delivery;
    const auto takeOldest = [&delivery](std::deque<FinishedJobs> &deliveries) {
        if (deliveries.empty())
            return false;
        delivery = std::move(deliveries.front());
        deliveries.pop_front();
        return true;
    };
    while (m_mailbox->look(takeOldest)) {
        m_outstanding -= int(delivery.results.size());
        Worker *worker = workerByIndex(delivery.workerIndex);
        if (worker && delivery.isIdle)
            worker->busy = false;
        releaseJobs(); // first, so that no worker is kept waiting
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
    if (isBusy() || waitingJobs() > 0)
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
