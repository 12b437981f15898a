#include "gui/common/tsb/recordcolumn.h"

namespace Tsb {

double SeriesColumn::valueAt(const SpectrumRecord &entry) const
{
    return entry.spectrum ? m_valueOf(*entry.spectrum) : noValue;
}

void SeriesColumn::noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record)
{
    if (m_stale)
        return;
    const auto series = store.series(key());
    if (!series)
        return invalidate();
    std::size_t i = Datastore::lowerBoundOf(*series, record->beginTime);
    while (i < series->size() && (*series)[i].record != record && (*series)[i].record->beginTime == record->beginTime)
        ++i;
    if (i == series->size() || (*series)[i].record != record) {
        if (series->size() != m_values.size())
            invalidate();
        return; // the record has no spectrum of this series
    }
    if (series->size() == m_values.size() + 1)
        m_values.insert(m_values.begin() + std::ptrdiff_t(i), valueAt((*series)[i]));
    else if (series->size() == m_values.size())
        m_values[i] = valueAt((*series)[i]);
    else
        invalidate();
}

const std::vector<double> &SeriesColumn::values(const Datastore &store)
{
    const auto series = store.series(key());
    const std::size_t size = series ? series->size() : 0;
    if (m_stale || m_values.size() != size) {
        m_values.clear();
        m_values.reserve(size);
        if (series)
            for (const SpectrumRecord &entry : *series)
                m_values.push_back(valueAt(entry));
        m_stale = false;
    }
    return m_values;
}

} // namespace Tsb
