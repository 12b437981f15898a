#pragma once

#include "log/logger.h"
#include "spectra/inversionjobs.h"
#include "spectra/recordinversion.h"
#include "util/mailbox.h"

#include <QObject>

#include <deque>
#include <vector>

namespace SpectMath {

/// The message of a worker.
struct FinishedJobs {
    int workerIndex = 0;
    bool isIdle = false; ///< the worker found no further job, and has ended
    std::vector<SpectrumRecordPointer> results;
};

/// Where workers leave their results, the oldest first. Outlives the queue if a worker does.
using InversionMailbox = Mailbox<std::deque<FinishedJobs>>;

/// Inverts records on a thread of its own. Everything handed over lies in boxes with a mutex.
class InversionWorker : public QObject {
    Q_OBJECT
public:
    InversionWorker(int index, std::shared_ptr<InversionJobs> jobs, std::shared_ptr<InversionMailbox> mailbox,
                    std::shared_ptr<const InverterList> inverters,
                    std::shared_ptr<const Spectrometer::RecordMetadata> metadata);
    /// Once its thread has ended.
    ~InversionWorker() override;

    int index() const { return m_index; }

    /// The most results that are handed back at once.
    static constexpr int largestBatch = 64;

public Q_SLOTS:
    /// The worker's thread: works until no job waits, and says so.
    void start();

private:
    void deliver(FinishedJobs &finished);

    const int m_index;
    const std::shared_ptr<InversionJobs> m_jobs;
    const std::shared_ptr<InversionMailbox> m_mailbox;
    const std::shared_ptr<const InverterList> m_inverters;
    const std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    const Log::Logger m_log;
};

} // namespace SpectMath
