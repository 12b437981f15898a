#pragma once

#include "log/logger.h"
#include "spectra/recordinversion.h"

#include <QObject>

#include <atomic>
#include <deque>
#include <mutex>
#include <vector>

namespace SpectMath {

class InversionQueue;

/// What a worker hands back: the results of some records of one batch.
struct FinishedJobs {
    int workerIndex = 0;
    int records = 0; ///< handled, those that a clear() dropped included
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

private:
    std::mutex m_mutex;
    InversionQueue *m_queue;
    std::deque<FinishedJobs> m_deliveries;
};

/// Inverts records on a thread of its own. Everything handed over lies in boxes with a mutex.
class InversionWorker : public QObject {
    Q_OBJECT
public:
    InversionWorker(int index, std::shared_ptr<InversionMailbox> mailbox, std::shared_ptr<const InverterList> inverters,
                    std::shared_ptr<const Spectrometer::RecordMetadata> metadata);
    ~InversionWorker() override;

    /// The queue's thread: gives the worker a batch, which it begins when those before it are done.
    void give(std::vector<Spectrometer::FullRecordPointer> &&batch);
    /// Any thread: no record that the worker holds now is begun any more.
    void drop();

    int index() const { return m_index; }

public Q_SLOTS:
    /// The worker's thread: works until its box is empty.
    void start();

private:
    struct Batch {
        std::vector<Spectrometer::FullRecordPointer> records;
        unsigned generation = 0;
    };

    bool takeBatch(Batch &batch);
    void work(const Batch &batch);

    const int m_index;
    const std::shared_ptr<InversionMailbox> m_mailbox;
    const std::shared_ptr<const InverterList> m_inverters;
    const std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    const Log::Logger m_log;
    std::mutex m_mutex; ///< guards m_batches
    std::deque<Batch> m_batches;
    std::atomic<unsigned> m_generation{0}; ///< batches of an earlier generation are dropped
};

} // namespace SpectMath
