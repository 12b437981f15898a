#pragma once

#include "log/logger.h"
#include "records/recordmetadata.h"
#include "spectra/inverter.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <deque>

class QThread;

namespace SpectMath {

class InversionMailbox;
class InversionWorker;

/// Spreads the inversion of records over worker threads, one per processor. Lives on the thread that made it, and all
/// of its slots are called there. Records must not change while it runs: workers read them.
///
/// Jobs go to workers in batches, so that a short inversion isn't outweighed by the cost of a queued call; a worker
/// holds at most two. Everything told here counts records, not batches.
class InversionQueue : public QObject {
    Q_OBJECT
public:
    enum State { Running, Stopping, Stopped };

    /// `workerCount` below 1 means one per processor.
    InversionQueue(InverterList inverters, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                   int workerCount = 0, QObject *parent = nullptr);
    /// Drops what waits, ends the threads and waits for each, up to 5 s.
    ~InversionQueue() override;

    State state() const { return m_state; }
    int waitingJobs() const { return int(m_jobs.size()); }
    bool isBusy() const;

    static constexpr int largestBatch = 64;

Q_SIGNALS:
    /// A record's results, in the order in which they were finished.
    void resultReady(SpectMath::SpectrumRecordPointer recordg);
    /// The number of waiting jobs, and how many were done since the last report. Once a second.
    void queueStatus(int length, int speed);
    /// After stop(): no job is left and no worker is busy.
    void stopped();
    /// No job is left and no worker is busy.
    void empty();

public Q_SLOTS:
    /// Interim records are ignored. A record that isn't provisional drops the provisional ones at the front of the
    /// queue.
    void addJob(const Spectrometer::FullRecordPointer &record);
    /// Drops all jobs that no worker has begun.
    void clear();
    /// Ends the queue once all jobs are done; to end it at once, clear() too.
    void stop();
    void workerFinished(int workerIndex, const SpectMath::SpectrumRecordPointer &record);
    void statusUpdateTimeout();

    /// Takes deliveries from the workers' mailbox, for a few milliseconds at a time.
    void takeResults();

private:
    struct Worker {
        QPointer<InversionWorker> worker;
        QPointer<QThread> thread;
        int held = 0;            ///< records handed over and not yet taken back; busy when above 0
        std::deque<int> batches; ///< records left in each batch that it holds, the oldest first
    };

    void startWorker(int index);
    void cleanWorkers();
    Worker *workerByIndex(int index);
    Worker *idleWorker();
    void give(Worker &worker, int count);
    void fill(Worker &worker);
    void takeBack(int workerIndex, int records);
    bool announceEnd();

    State m_state = Running;
    const std::shared_ptr<const InverterList> m_inverters;
    const std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    const Log::Logger m_log;
    std::shared_ptr<InversionMailbox> m_mailbox;
    std::deque<Spectrometer::FullRecordPointer> m_jobs;
    QTimer m_statusTimer;
    int m_jobsAdded = 0;
    int m_jobsDone = 0;
    QVector<Worker> m_workers;
};

} // namespace SpectMath
