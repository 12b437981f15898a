#pragma once

#include "spectra/inversionqueue.h"
#include "store/datastore.h"
#include "util/slicedwork.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>
#include <optional>

/// Owns one run at a time of inverters over the records of a store: the queue, its feeding, its end and the wish to
/// cancel. Results enter the store as they come. Main thread only.
class Reinversion : public QObject {
    Q_OBJECT
public:
    explicit Reinversion(QObject *parent = nullptr);
    /// Ends a run without a word, and waits for the records that are being inverted.
    ~Reinversion() override;

    bool isRunning() const { return !m_inversionQueue.isNull(); }
    /// Also while the threads of a cancelled run have yet to end: they read records.
    bool hasThreads() const { return !children().isEmpty(); }
    /// Results of the run under way that came in so far.
    int recordsDone() const { return m_done; }
    /// The records of the run under way; interim ones count until they are met.
    int recordCount() const { return m_count; }
    /// Of runs to come; below 1 means one for each processor.
    void setWorkerCount(int count) { m_workerCount = count; }

    /// Records are handed to the queue from the next turn of the event loop on, in order and in slices, so that
    /// however many there are the window isn't kept waiting. No run may be under way.
    void start(std::shared_ptr<Datastore> store, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
               SpectMath::InverterList inverters);
    /// The same over some of its records.
    void startFor(Datastore::Records records, std::shared_ptr<Datastore> store,
                  std::shared_ptr<const Spectrometer::RecordMetadata> metadata, SpectMath::InverterList inverters);
    /// No further record is begun and no further result enters the store. Nothing is emitted. The threads end in a
    /// later turn of the event loop.
    void cancel();

Q_SIGNALS:
    void started();
    /// All records are through. Nothing is running any more.
    void finished();
    /// Once a second: records that wait, and records done since the last time.
    void queueStatus(int length, int speed);

private:
    void begin(std::shared_ptr<Datastore> store, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
               SpectMath::InverterList inverters);
    void takeResult(const SpectMath::SpectrumRecordPointer &result);
    /// Hands some records to the queue; false when it has all.
    bool feed();
    void allIsFed();
    void queueIsEmpty();
    const Datastore::Records &records() const { return m_chosen ? *m_chosen : m_store->records(); }
    bool isFed() const { return m_fed == int(records().size()); }
    void letGo();

    int m_workerCount = 0;
    std::shared_ptr<Datastore> m_store;         ///< of the run under way
    std::optional<Datastore::Records> m_chosen; ///< none: all of the store
    /// A child too: if the event loop ends before deleteLater() comes to it, it goes with this object.
    QSharedPointer<SpectMath::InversionQueue> m_inversionQueue;
    SlicedWork m_feeding;
    int m_fed = 0; ///< records that the queue was given
    int m_done = 0;
    int m_count = 0;
};
