#include "gui/morvantide/slowrelease.h"

namespace {

constexpr int longestSliceMs = 3;
/// Entries between two looks at the clock.
constexpr int entriesPerLook = 256;

} // namespace

SlowRelease::SlowRelease() : m_work(longestSliceMs, [this] { return releaseSome(); }) {}

void SlowRelease::take(std::shared_ptr<Datastore::Series> series)
{
    if (!series)
        return;
    m_series.push_back(std::move(series));
    m_work.start();
}

bool SlowRelease::releaseSome()
{
    Datastore::Series &series = *m_series.back();
    for (int i = 0; i < entriesPerLook && !series.empty(); ++i)
        series.pop_back();
    if (series.empty())
        m_series.pop_back();
    return !m_series.empty();
}
