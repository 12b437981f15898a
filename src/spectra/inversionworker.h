#pragma once

#include "log/logger.h"
#include "spectra/inversionjobs.h"
#include "spectra/recordinversion.h"

#include <QObject>

#include <deque>
#include <mutex>
#include <vector>

namespace SpectMath {

class InversionQueue;

/// What a worker hands back.
struct FinishedJobs {
    int workerIndex = 0;
    bool isIdle = false; ///< the worker found no further job, and has ended
    std::vector<SpectrumRecordPointer> results;
};

/// Where workers leave their results. Outlives the queue if a worker does; the posted event only says that something is
/// there.
class InversionMailbox {
public:
    explicit InversionMailbox(InversionQueue *queue) : m_queue(queue) {}

    /// Any thread. Wakes the queue if the box was empty.
    void put(FinishedJobs &&jobs);
    /// The queue's thread: the oldest delivery; false if there is none.
    bool take(FinishedJobs &jobs);
    /// The queue is going away: nothing is posted to it from now on.
    void detach();
    /// Asks for another turn of the queue's thread.
    void wake();
    /// Whatever was put here by a thread that has ended happened before what follows.
    void synchronise();

private:
    std::mutex m_mutex;
    InversionQueue *m_queue;
    std::deque<FinishedJobs> m_deliveries;
};

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

    /// Results are handed back at the latest when there are so many.
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
