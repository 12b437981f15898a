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

InversionWorker::InversionWorker(int index, std::shared_ptr<InversionMailbox> mailbox,
                                 std::shared_ptr<const InverterList> inverters,
                                 std::shared_ptr<const Spectrometer::RecordMetadata> metadata)
    : m_index(index), m_mailbox(std::move(mailbox)), m_inverters(std::move(inverters)), m_metadata(std::move(metadata)),
      m_log(QStringLiteral("inversion"))
{
}

InversionWorker::~InversionWorker()
{
    // The thread has ended; taking the lock once orders what it did last before what follows.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_batches.clear();
}

void InversionWorker::give(std::vector<Spectrometer::FullRecordPointer> &&records)
{
    bool wasEmpty;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        wasEmpty = m_batches.empty();
        m_batches.push_back({std::move(records), m_generation.load()});
    }
    if (wasEmpty)
        QMetaObject::invokeMethod(this, "start", Qt::QueuedConnection);
}

void InversionWorker::drop()
{
    ++m_generation;
}

bool InversionWorker::takeBatch(Batch &batch)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_batches.empty())
        return false;
    batch = std::move(m_batches.front());
    m_batches.pop_front();
    return true;
}

void InversionWorker::start()
{
    Batch batch;
    while (takeBatch(batch))
        work(batch);
}

void InversionWorker::work(const Batch &batch)
{
    const auto complain = [this](int level, const QString &text) { m_log.log(level, text); };
    FinishedJobs finished;
    finished.workerIndex = m_index;
    QElapsedTimer sinceDelivery;
    sinceDelivery.start();
    for (const Spectrometer::FullRecordPointer &record : batch.records) {
        if (m_generation.load() == batch.generation)
            finished.results.push_back(invertRecord(*m_inverters, *record, *m_metadata, complain));
        ++finished.records;
        if (sinceDelivery.elapsed() >= longestWaitMs) {
            m_mailbox->put(std::move(finished));
            finished = FinishedJobs();
            finished.workerIndex = m_index;
            sinceDelivery.start();
        }
    }
    if (finished.records > 0)
        m_mailbox->put(std::move(finished));
}

} // namespace SpectMath
