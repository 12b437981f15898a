#include "gui/morvantide/reinversion.h"

#include <algorithm>
#include <iterator>

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
    connect(queue, &InversionQueue::resultReady, this, &Reinversion::takeResult);
    connect(queue, &InversionQueue::empty, this, &Reinversion::queueIsEmpty);
    connect(queue, &InversionQueue::queueStatus, this,
            [this](int length, int speed) { Q_EMIT queueStatus(length + int(records().size()) - m_fed, speed); });
    m_feeding.start();
    Q_EMIT started();
}

/// A record that was inverted before, as when its rows came one after the other, keeps none of those results.
void Reinversion::takeResult(const SpectMath::SpectrumRecordPointer &result)
{
    ++m_done;
    const auto isNew = [&result](const std::shared_ptr<SpectMath::Spectrum> &spectrum) {
        return std::any_of(result->spectra.begin(), result->spectra.end(),
                           [&spectrum](const auto &one) { return one && spectrum && one->info == spectrum->info; });
    };
    const int index = m_store->indexOfHead(*result);
    if (index < 0)
        return;
    const SpectMath::SpectrumPointerList &had = m_store->at(index)->spectra;
    if (std::none_of(had.begin(), had.end(), isNew))
        return m_store->addSpectra(result);
    SpectMath::SpectrumPointerList spectra;
    std::remove_copy_if(had.begin(), had.end(), std::back_inserter(spectra), isNew);
    spectra.insert(spectra.end(), result->spectra.begin(), result->spectra.end());
    const auto replacing = std::make_shared<SpectMath::SpectrumRecord>(*result);
    replacing->spectra = std::move(spectra);
    m_store->replaceSpectra(replacing);
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
