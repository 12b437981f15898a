#include "gui/morvantide/invertersinuse.h"

#include "gui/browser/views/timeseriesbrowser.h"
#include "spectra/inverterchoice.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace {

constexpr int laterInterval = 500; // ms

/// In their order: the rows of a record come one after the other, from several files.
Datastore::Records eachOnce(Datastore::Records records)
{
    std::unordered_set<const Record *> known;
    const auto isKnown = [&known](const std::shared_ptr<Record> &record) { return !known.insert(record.get()).second; };
    records.erase(std::remove_if(records.begin(), records.end(), isKnown), records.end());
    return records;
}

} // namespace

InvertersInUse::InvertersInUse(std::shared_ptr<UiInfo> uiInfo, Tsb::TimeSeriesBrowser *browser)
    : m_uiInfo(std::move(uiInfo)), m_browser(browser), m_logger(QStringLiteral("gui"))
{
    m_later.setWorkerCount(1);
    m_laterTimer.setSingleShot(true);
    m_laterTimer.setInterval(laterInterval);
    connect(&m_laterTimer, &QTimer::timeout, this, &InvertersInUse::invertThoseThatCame);
    connect(&m_later, &Reinversion::finished, this, &InvertersInUse::endOfThoseThatCame);
}

void InvertersInUse::setDatastore(std::shared_ptr<Datastore> store)
{
    stopInverting();
    m_came.clear();
    if (m_store)
        m_store->disconnect(this);
    m_store = std::move(store);
    if (m_store)
        connect(m_store.get(), &Datastore::updated, this,
                [this](int, const std::shared_ptr<Record> &record, int flags) { noteUpdated(record, flags); });
    m_reinversionCount = 0;
    m_inverters.clear();
    Q_EMIT changed(m_inverters);
}

SpectMath::InverterList InvertersInUse::take(const SpectMath::InverterList &loaded)
{
    const auto tellRemoval = [this](const QString &oldName, const QString &name) {
        m_logger.log(Log::Warning,
                     QStringLiteral("Removing existing spectrum '%1' with same hash as '%2'").arg(oldName, name));
    };
    const auto [used, replaced] = SpectMath::chooseInverters(loaded, m_store->records(), *m_uiInfo->metadata());
    for (const SpectMath::InverterPointer &inverter : replaced)
        tellRemoval(inverter->info()->name, inverter->info()->name);
    const QString tag = QStringLiteral("reinv-%1").arg(++m_reinversionCount);
    std::vector<UiInfo::InfoPointer> removed; // views know them until the list is published
    for (const SpectMath::InverterPointer &inverter : used) {
        const UiInfo::InfoPointer &info = inverter->info();
        if (const UiInfo::InfoPointer old = m_uiInfo->spectrumById(info->hash)) {
            tellRemoval(old->name, info->name);
            discard(old);
            removed.push_back(old);
        }
        m_uiInfo->addSpectrum(info, tag);
    }
    m_inverters.insert(m_inverters.end(), used.begin(), used.end());
    publish();
    return used;
}

void InvertersInUse::remove(const SpectMath::SpectrumInfo *spectrum)
{
    if (m_ignoresRemovals)
        return;
    const auto &known = m_uiInfo->spectrumInfos();
    const auto found =
        std::find_if(known.begin(), known.end(), [spectrum](const auto &info) { return info.get() == spectrum; });
    if (found == known.end())
        return;
    const UiInfo::InfoPointer info = *found; // views know it until the list is published
    discard(info);
    publish();
}

// ---- records that come later

void InvertersInUse::noteUpdated(const std::shared_ptr<Record> &record, int flags)
{
    if (!m_isFollowing || m_inverters.empty() || (flags & (RecordCameIn | DataReplaced)) == 0)
        return;
    m_came.push_back(record);
    if (!m_laterTimer.isActive())
        m_laterTimer.start();
}

void InvertersInUse::invertThoseThatCame()
{
    if (m_came.empty() || m_inverters.empty()) {
        m_came.clear();
        return endOfThoseThatCame();
    }
    if (m_later.hasThreads())
        return m_laterTimer.start();
    m_given = eachOnce(std::exchange(m_came, {}));
    m_later.startFor(m_given, m_store, m_uiInfo->metadata(), m_inverters);
}

void InvertersInUse::endOfThoseThatCame()
{
    m_given.clear();
    if (!isBehind())
        Q_EMIT caughtUp();
}

/// Those that it was to invert wait for the next time.
void InvertersInUse::stopInverting()
{
    if (!m_later.isRunning())
        return;
    m_later.cancel();
    m_came.insert(m_came.begin(), m_given.begin(), m_given.end());
    m_laterTimer.start();
}

void InvertersInUse::ignoreRemovals()
{
    m_ignoresRemovals = true;
    QMetaObject::invokeMethod(
        this, [this] { m_ignoresRemovals = false; }, Qt::QueuedConnection);
}

/// The list of spectra is to be published then.
void InvertersInUse::discard(const UiInfo::InfoPointer &info)
{
    stopInverting();
    m_logger.log(Log::Info, QStringLiteral("Removing spectrum '%1' from memory.").arg(info->name));
    m_browser->setListening(false); // what shows the spectrum hears of it with the list
    m_discarded.take(m_store->removeSpectrum(info.get()));
    m_browser->setListening(true);
    m_uiInfo->removeSpectrum(info.get());
    const auto isGone = [this, &info](const SpectMath::InverterPointer &inverter) {
        if (inverter->info() != info)
            return false;
        m_logger.log(Log::Debug, QStringLiteral("removed from invmap"));
        return true;
    };
    m_inverters.erase(std::remove_if(m_inverters.begin(), m_inverters.end(), isGone), m_inverters.end());
}

void InvertersInUse::publish()
{
    Q_EMIT changed(m_inverters);
    m_uiInfo->publish();
}
