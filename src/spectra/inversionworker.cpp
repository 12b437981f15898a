#include "spectra/inversionworker.h"

#include <QElapsedTimer>

namespace SpectMath {

namespace {

/// Results wait no longer than this for the rest of their batch.
constexpr qint64 longestWaitMs = 20;

} // namespace

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
    m_mailbox->look([](const auto &) {}); // which the thread used last: all that it did comes before this
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
    m_mailbox->put([&finished](auto &deliveries) { deliveries.push_back(std::exchange(finished, {})); });
}

} // namespace SpectMath
