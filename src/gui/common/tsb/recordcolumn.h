#pragma once

#include "store/datastore.h"

#include <functional>
#include <vector>

namespace Tsb {

/// One value for each record of a store, kept in step with it, so that drawing doesn't touch the records. Worked out
/// anew when it is asked for after invalidate().
template<typename T>
class RecordColumn {
public:
    using ValueOf = std::function<T(const Record &)>;

    void setValueOf(ValueOf valueOf)
    {
        m_valueOf = std::move(valueOf);
        invalidate();
    }
    void invalidate() { m_stale = true; }
    T valueOf(const Record &record) const { return m_valueOf(record); }

    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, int index, const Record &record)
    {
        if (m_stale)
            return;
        if (std::size_t(store.size()) == m_values.size() + 1)
            m_values.insert(m_values.begin() + index, m_valueOf(record));
        else if (std::size_t(store.size()) == m_values.size())
            m_values[std::size_t(index)] = m_valueOf(record);
        else
            m_stale = true;
    }
    /// For Datastore::removed, which always means the oldest record.
    void noteRemoved()
    {
        if (!m_values.empty())
            m_values.erase(m_values.begin());
    }

    const std::vector<T> &values(const Datastore &store)
    {
        if (m_stale || m_values.size() != std::size_t(store.size())) {
            m_values.clear();
            m_values.reserve(std::size_t(store.size()));
            for (const auto &record : store.records())
                m_values.push_back(m_valueOf(*record));
            m_stale = false;
        }
        return m_values;
    }

private:
    ValueOf m_valueOf;
    std::vector<T> m_values;
    bool m_stale = true;
};

/// The same for the entries of one spectrum series.
class SeriesColumn {
public:
    using ValueOf = std::function<double(const SpectMath::Spectrum &)>;

    explicit SeriesColumn(SpectMath::SpectrumInfoPointer info, ValueOf valueOf)
        : m_info(std::move(info)), m_valueOf(std::move(valueOf))
    {
    }

    const SpectMath::SpectrumInfo *key() const { return m_info.get(); }
    void invalidate() { m_stale = true; }
    double valueOf(const SpectMath::Spectrum &spectrum) const { return m_valueOf(spectrum); }
    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record);
    const std::vector<double> &values(const Datastore &store);

private:
    double valueAt(const SpectrumRecord &entry) const;

    SpectMath::SpectrumInfoPointer m_info; ///< held, so that the key isn't given to another description
    ValueOf m_valueOf;
    std::vector<double> m_values;
    bool m_stale = true;
};

} // namespace Tsb
