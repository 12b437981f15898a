#include "gui/morvantide/reinversion.h"

namespace {

/// Of the event loop's time, at a stretch.
constexpr int longestFeedingMs = 2;
/// Records between two looks at the clock.
constexpr int recordsPerLook = 256;

} // namespace

Reinversion::Reinversion(QObject *parent)
    : QObject(parent), m_feeding(
                           longestFeedingMs, [this] { return feed(); }, [this] { allIsFed(); })
{
}

Reinversion::~Reinversion()
{
    if (isRunning())
        cancel();
}

void Reinversion::start(std::shared_ptr<Datastore> store, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                        SpectMath::InverterList inverters)
{
    m_chosen.reset();
    begin(std::move(store), std::move(metadata), std::move(inverters));
}

void Reinversion::startFor(Datastore::Records records, std::shared_ptr<Datastore> store,
                           std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                           SpectMath::InverterList inverters)
{
    m_chosen = std::move(records);
    begin(std::move(store), std::move(metadata), std::move(inverters));
}

void Reinversion::begin(std::shared_ptr<Datastore> store, std::shared_ptr<const Spectrometer::RecordMetadata> metadata,
                        SpectMath::InverterList inverters)
{
    using SpectMath::InversionQueue;
    Q_ASSERT(!isRunning());
    m_store = std::move(store);
    m_fed = 0;
    m_done = 0;
    m_count = int(records().size());
    m_inversionQueue.reset(new InversionQueue(std::move(inverters), std::move(metadata), m_workerCount, this),
                           &QObject::deleteLater);
    const InversionQueue *queue = m_inversionQueue.get();
    connect(queue, &InversionQueue::resultReady, m_store.get(), &Datastore::addSpectra);
    connect(queue, &InversionQueue::resultReady, this, [this] { ++m_done; });
    connect(queue, &InversionQueue::empty, this, &Reinversion::queueIsEmpty);
    connect(queue, &InversionQueue::queueStatus, this,
            [this](int length, int speed) { Q_EMIT queueStatus(length + int(records().size()) - m_fed, speed); });
    m_feeding.start();
    Q_EMIT started();
}

bool Reinversion::feed()
{
    const int end = std::min(m_fed + recordsPerLook, int(records().size()));
    for (; m_fed < end; ++m_fed) {
        const std::shared_ptr<Record> &record = records()[std::size_t(m_fed)];
        m_count -= record->interim;
        m_inversionQueue->addJob(record);
    }
    return !isFed();
}

void Reinversion::allIsFed()
{
    // A queue that took no record, or has no worker, is never told to be empty.
    if (!m_inversionQueue->isBusy())
        queueIsEmpty();
}

void Reinversion::queueIsEmpty()
{
    if (!isFed())
        return; // the workers were faster than the feeding
    letGo();
    Q_EMIT finished();
}

void Reinversion::cancel()
{
    m_inversionQueue->stop();
    m_inversionQueue->clear();
    letGo();
}

void Reinversion::letGo()
{
    m_feeding.stop();
    m_inversionQueue->disconnect(); // it lives on for a while
    m_inversionQueue.reset();
    m_store.reset();
    m_chosen.reset();
}
