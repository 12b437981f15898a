#include "spectra/inversionworker.h"

#include "spectra/inversionqueue.h"

#include <QElapsedTimer>

namespace SpectMath {

namespace {

/// Results wait no longer than this for the rest of their batch.
constexpr qint64 longestWaitMs = 20;

} // namespace

void InversionMailbox::put(FinishedJobs &&jobs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool wasEmpty = m_deliveries.empty();
    m_deliveries.push_back(std::move(jobs));
    if (wasEmpty && m_queue)
        QMetaObject::invokeMethod(m_queue, "takeResults", Qt::QueuedConnection);
}

bool InversionMailbox::take(FinishedJobs &jobs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_deliveries.empty())
        return false;
    jobs = std::move(m_deliveries.front());
    m_deliveries.pop_front();
    return true;
}

void InversionMailbox::detach()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_queue = nullptr;
}

void InversionMailbox::wake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_queue && !m_deliveries.empty())
        QMetaObject::invokeMethod(m_queue, "takeResults", Qt::QueuedConnection);
}

void InversionMailbox::synchronise()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
}

InversionWorker::InversionWorker(int index, std::shared_ptr<InversionJobs> jobs,
                                 std::shared_ptr<InversionMailbox> mailbox,
                                 std::shared_ptr<const InverterList> inverters,
                                 std::shared_ptr<const Spectrometer::RecordMetadata> metadata)
    : m_index(index), m_jobs(std::move(jobs)), m_mailbox(std::move(mailbox)), m_inverters(std::move(inverters)),
      m_metadata(std::move(metadata)), m_log(QStringLiteral("inversion"))
{
}

InversionWorker::~InversionWorker()
{
    m_mailbox->synchronise(); // which the thread used last
}

void InversionWorker::start()
{
    const auto complain = [this](int level, const QString &text) { m_log.log(level, text); };
    FinishedJobs finished;
    QElapsedTimer sinceDelivery;
    sinceDelivery.start();
    while (const InversionJobs::Job record = m_jobs->take(m_index)) {
        finished.results.push_back(invertRecord(*m_inverters, *record, *m_metadata, complain));
        if (finished.results.size() >= std::size_t(largestBatch) || sinceDelivery.elapsed() >= longestWaitMs) {
            deliver(finished);
            sinceDelivery.start();
        }
    }
    finished.isIdle = true;
    deliver(finished);
}

void InversionWorker::deliver(FinishedJobs &finished)
{
    finished.workerIndex = m_index;
    m_mailbox->put(std::exchange(finished, {}));
}

} // namespace SpectMath
