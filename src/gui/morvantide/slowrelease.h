#pragma once

#include "util/slicedwork.h"
#include "store/datastore.h"

#include <vector>

/// Lets go of series of discarded spectra in slices, so that freeing half a million of them doesn't hold the window up.
/// Main thread only.
class SlowRelease {
public:
    SlowRelease();

    /// Nobody else changes the series from now on. Null is ignored.
    void take(std::shared_ptr<Datastore::Series> series);
    bool isDone() const { return m_series.empty(); }

private:
    /// False when all are gone.
    bool releaseSome();

    std::vector<std::shared_ptr<Datastore::Series>> m_series;
    SlicedWork m_work;
};
