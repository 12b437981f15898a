#include "columns/recordcolumn.h"

#include "columns/spectrumwalk.h"

namespace Tsb {

double SeriesColumn::valueAt(const SpectrumRecord &entry) const
{
    return entry.spectrum ? m_valueOf(*entry.spectrum) : noValue;
}

void SeriesColumn::noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record)
{
    if (isOfTotals()) {
        ++m_totalsRevision;
        return;
    }
    m_column.follow(store.lostEntries(key()));
    if (m_column.isStale())
        return;
    const auto series = store.series(key());
    if (!series)
        return m_column.invalidate();
    std::size_t i = Datastore::lowerBoundOf(*series, record->beginTime);
    while (i < series->size() && (*series)[i].record != record && (*series)[i].record->beginTime == record->beginTime)
        ++i;
    if (i < series->size() && (*series)[i].record == record)
        m_column.note(i, series->size(), valueAt((*series)[i]));
    else if (series->size() != m_column.size()) // the record has no spectrum of this series, but another came unnoticed
        m_column.invalidate();
}

const double *SeriesColumn::values(const Datastore &store)
{
    if (isOfTotals())
        return totals(store);
    static const Datastore::Series none;
    const auto series = store.series(key());
    m_column.follow(store.lostEntries(key()));
    const Datastore::Series &entries = series ? *series : none;
    m_column.bringUpToDate(entries.size(), [&](std::size_t begin, std::size_t end, double *place) {
        walkSpectra(entries, begin, end, [&](const SpectrumRecord &entry) { *place++ = valueAt(entry); });
    });
    return m_column.data();
}

const double *SeriesColumn::totals(const Datastore &store)
{
    const auto series = store.series(key());
    const std::size_t count = series ? series->size() : 0, lost = store.lostEntries(key());
    if (count != m_totals || lost != m_lostTotals)
        ++m_totalsRevision;
    m_totals = count;
    m_lostTotals = lost;
    return store.totalDecades(key());
}

} // namespace Tsb
