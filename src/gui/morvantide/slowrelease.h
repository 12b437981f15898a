#pragma once

#include "store/datastore.h"

#include <QTimer>

#include <vector>

/// Lets go of series of discarded spectra in slices, so that freeing half a million of them doesn't hold the window up.
/// Main thread only.
class SlowRelease : public QObject {
    Q_OBJECT
public:
    explicit SlowRelease(QObject *parent = nullptr);
    ~SlowRelease() override;

    /// Nobody else changes the series from now on. Null is ignored.
    void take(std::shared_ptr<Datastore::Series> series);
    bool isDone() const { return m_series.empty(); }

private:
    void releaseSome();

    std::vector<std::shared_ptr<Datastore::Series>> m_series;
    QTimer m_timer;
};
