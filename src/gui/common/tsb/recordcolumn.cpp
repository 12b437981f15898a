#include "gui/common/tsb/recordcolumn.h"

#include "gui/common/tsb/spectrumwalk.h"

namespace Tsb {

double SeriesColumn::valueAt(const SpectrumRecord &entry) const
{
    if (m_ofEntry)
        return entry.*m_ofEntry;
    return entry.spectrum ? m_valueOf(*entry.spectrum) : noValue;
}

void SeriesColumn::noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record)
{
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
    static const Datastore::Series none;
    const auto series = store.series(key());
    m_column.follow(store.lostEntries(key()));
    const Datastore::Series &entries = series ? *series : none;
    m_column.bringUpToDate(entries.size(), [&](std::size_t begin, std::size_t end, double *place) {
        const auto visit = [&](const SpectrumRecord &entry) { *place++ = valueAt(entry); };
        const auto at = [&entries](std::size_t i) { return entries.begin() + std::ptrdiff_t(i); };
        if (m_ofEntry)
            std::for_each(at(begin), at(end), visit);
        else
            walkSpectra(entries, begin, end, visit);
    });
    return m_column.data();
}

} // namespace Tsb
