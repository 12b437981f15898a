#pragma once

#include "gui/common/uiinfo.h"
#include "gui/morvantide/reinversion.h"
#include "gui/morvantide/slowrelease.h"
#include "log/logger.h"
#include "spectra/inverter.h"
#include "store/datastore.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace Tsb {
class TimeSeriesBrowser;
}

/// Owns the inverters in use. With an inverter come its description, in UiInfo, and its spectra, in the store; they go
/// together. Main thread only.
class InvertersInUse : public QObject {
    Q_OBJECT
public:
    InvertersInUse(std::shared_ptr<UiInfo> uiInfo, Tsb::TimeSeriesBrowser *browser);

    /// In the order of loading.
    const SpectMath::InverterList &inverters() const { return m_inverters; }
    /// Other data, or none: no inverter is in use.
    void setDatastore(std::shared_ptr<Datastore> store);
    /// Takes those of the loaded into use that the records need, and returns them. They replace spectra with the
    /// same hash: equal hashes mean equal inversions.
    SpectMath::InverterList take(const SpectMath::InverterList &loaded);
    /// Takes a spectrum out of all records, and its inverter out of use. An unknown one is left alone.
    void remove(const SpectMath::SpectrumInfo *spectrum);
    /// Until the event loop has turned: one gesture may ask for several removals.
    void ignoreRemovals();
    /// While it is on, records that come into the store, or get other data, are inverted by those in use soon after, on
    /// a thread of its own.
    void setFollowing(bool on) { m_isFollowing = on; }
    /// Whether such records lack spectra that they are going to have.
    bool isBehind() const { return !m_came.empty() || m_later.isRunning(); }
    /// Whether such a thread reads records, which must not change then.
    bool hasThreads() const { return m_later.hasThreads(); }

Q_SIGNALS:
    void changed(const SpectMath::InverterList &inverters);
    /// Nothing is behind any more.
    void caughtUp();

private:
    void noteUpdated(const std::shared_ptr<Record> &record, int flags);
    void invertThoseThatCame();
    void endOfThoseThatCame();
    void stopInverting();
    void discard(const UiInfo::InfoPointer &info);
    void publish();

    const std::shared_ptr<UiInfo> m_uiInfo;
    Tsb::TimeSeriesBrowser *const m_browser;
    const Log::Logger m_logger;
    std::shared_ptr<Datastore> m_store;
    SpectMath::InverterList m_inverters;
    bool m_isFollowing = false;
    Datastore::Records m_came, m_given; ///< records that are to be inverted, and those of the run under way
    Reinversion m_later;
    QTimer m_laterTimer;
    SlowRelease m_discarded;
    std::int64_t m_reinversionCount = 0; ///< since the data were opened
    bool m_ignoresRemovals = false;
};
