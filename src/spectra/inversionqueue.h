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
template<class Content>
class Mailbox;

namespace SpectMath {

class InversionJobs;
class InversionWorker;
struct FinishedJobs;

/// Spreads the inversion of records over worker threads, one per processor. Lives on the thread that made it, and all
/// of its slots are called there. Records must not change while it runs: workers read them.
///
/// Workers take the jobs one by one from a box that they share, so that the number of waiting records is known exactly,
/// and hand the results back in batches, so that a short inversion isn't outweighed by the cost of a queued call.
class InversionQueue : public QObject {
    Q_OBJECT
public:
    enum State { Running, Stopping, Stopped };

    /// `workerCount` below 1 means one per processor.
    InversionQueue(InverterList inverters, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                   int workerCount = 0, QObject *parent = nullptr);
    /// Drops the waiting records, ends the threads and waits up to 5 s for all of them; one that takes longer goes away
    /// by itself.
    ~InversionQueue() override;

    State state() const { return m_state; }
    /// Jobs that no worker has begun.
    int waitingJobs() const;
    bool isBusy() const;

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

private Q_SLOTS:
    void releaseJobs();

private:
    struct Worker {
        QPointer<InversionWorker> worker;
        QPointer<QThread> thread;
        bool busy = false; ///< called upon, and it hasn't said yet that it is idle
    };

    void startWorker(int index);
    Worker *workerByIndex(int index);
    Worker *idleWorker();
    void call(Worker &worker);
    void dropProvisional();
    bool announceEnd();

    State m_state = Running;
    const std::shared_ptr<const InverterList> m_inverters;
    const std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    const Log::Logger m_log;
    std::shared_ptr<Mailbox<std::deque<FinishedJobs>>> m_mailbox;
    std::shared_ptr<InversionJobs> m_released;          ///< within the workers' reach
    std::deque<Spectrometer::FullRecordPointer> m_jobs; ///< behind those
    bool m_releasePosted = false;
    int m_outstanding = 0; ///< jobs within the workers' reach, and those whose results weren't taken yet
    QTimer m_statusTimer;
    int m_jobsAdded = 0;
    int m_jobsDone = 0;
    QVector<Worker> m_workers;
};

} // namespace SpectMath
