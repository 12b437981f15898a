#pragma once

#include "columns/recordwalk.h"
#include "util/runontwothreads.h"
#include "util/valuequeue.h"

#include <functional>

namespace Tsb {

/// Values kept in step with a sequence that loses entries at its front only, and counts them.
template<typename T>
class Column {
public:
    bool isStale() const { return m_stale; }
    void invalidate() { m_stale = true; }
    std::size_t size() const { return m_values.size(); }
    const T *data() const { return m_values.data(); }
    /// Another number after each change of the values.
    std::uint64_t revision() const { return m_revision; }

    /// Takes away as many as the sequence lost since, out of so many by now.
    void follow(std::size_t lostSoFar)
    {
        const std::size_t lost = lostSoFar - m_lost;
        m_lost = lostSoFar;
        if (lost > m_values.size())
            m_stale = true;
        if (m_stale || lost == 0)
            return;
        m_values.removeFirst(lost);
        ++m_revision;
    }
    /// For the value of entry i of what are so many now, which came in or changed.
    void note(std::size_t i, std::size_t size, const T &value)
    {
        ++m_revision;
        if (size == m_values.size() + 1)
            m_values.insert(i, value);
        else if (size == m_values.size())
            m_values.set(i, value);
        else
            m_stale = true;
    }
    /// Works all values out anew if they are stale or not of that size: fill(begin, end, place) writes those of the
    /// entries begin .. end - 1. Called from two threads for many.
    template<typename Fill>
    void bringUpToDate(std::size_t size, Fill fill)
    {
        if (!m_stale && m_values.size() == size)
            return;
        T *const values = m_values.unset(size);
        runOnTwoThreads(size, [&fill, values](std::size_t begin, std::size_t end) { fill(begin, end, values + begin); });
        m_stale = false;
        ++m_revision;
    }

private:
    ValueQueue<T> m_values;
    std::size_t m_lost = 0;
    std::uint64_t m_revision = 0;
    bool m_stale = true;
};

/// One value for each record of a store, kept in step with it, so that drawing doesn't touch the records. Worked out
/// anew when it is asked for after invalidate().
template<typename T>
class RecordColumn {
public:
    /// May be called from two threads at once.
    using ValueOf = std::function<T(const Record &)>;

    /// The slot that values come from, for columns that are quickly made.
    void setValueOf(ValueOf valueOf, RecordSlot reads = {})
    {
        m_valueOf = std::move(valueOf);
        m_valuesOfMarks = nullptr;
        m_reads = reads;
        invalidate();
    }
    /// Values that the records' marks tell: no record is read for them.
    template<typename ValueOfMarks>
    void setValueOfMarks(ValueOfMarks valueOf)
    {
        m_valueOf = [valueOf](const Record &record) { return valueOf(RecordMarks::of(record)); };
        m_valuesOfMarks = [valueOf](const RecordMarks *begin, const RecordMarks *end, T *place) {
            std::transform(begin, end, place, valueOf);
        };
        invalidate();
    }
    void invalidate() { m_column.invalidate(); }
    T valueOf(const Record &record) const { return m_valueOf(record); }

    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, int index, const Record &record)
    {
        m_column.follow(store.lostRecords());
        if (!m_column.isStale())
            m_column.note(std::size_t(index), std::size_t(store.size()), m_valueOf(record));
    }
    /// As many as there are records, until the store changes.
    const T *values(const Datastore &store)
    {
        m_column.follow(store.lostRecords());
        const RecordMarks *const marks = m_valuesOfMarks ? store.recordMarks() : nullptr;
        m_column.bringUpToDate(store.records().size(), [&](std::size_t begin, std::size_t end, T *place) {
            if (marks)
                m_valuesOfMarks(marks + begin, marks + end, place);
            else
                walkRecords(store.records(), begin, end, m_reads,
                            [&](const Record &record) { *place++ = m_valueOf(record); });
        });
        return m_column.data();
    }
    /// Another number after each change of the values.
    std::uint64_t revision() const { return m_column.revision(); }

private:
    ValueOf m_valueOf;
    /// Where those tell it: all at once, as they are quicker to look at than a function is to call.
    std::function<void(const RecordMarks *begin, const RecordMarks *end, T *place)> m_valuesOfMarks;
    RecordSlot m_reads;
    Column<T> m_column;
};

/// The same for the entries of one spectrum series. Their total concentrations stand in the store.
class SeriesColumn {
public:
    /// May be called from two threads at once.
    using ValueOf = std::function<double(const SpectMath::Spectrum &)>;

    /// Values that are told by what lies in the spectra.
    SeriesColumn(SpectMath::SpectrumInfoPointer info, ValueOf valueOf)
        : m_info(std::move(info)), m_valueOf(std::move(valueOf))
    {
    }
    /// The total concentrations, by decadesOf().
    static SeriesColumn ofTotalDecades(SpectMath::SpectrumInfoPointer info) { return {std::move(info), nullptr}; }

    const SpectMath::SpectrumInfo *key() const { return m_info.get(); }
    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record);
    /// As many as the series has entries, until the store changes.
    const double *values(const Datastore &store);
    /// Another number after each change of the values.
    std::uint64_t revision() const { return isOfTotals() ? m_totalsRevision : m_column.revision(); }

private:
    bool isOfTotals() const { return !m_valueOf; }
    double valueAt(const SpectrumRecord &entry) const;
    const double *totals(const Datastore &store);

    SpectMath::SpectrumInfoPointer m_info; ///< held, so that the key isn't given to another description
    ValueOf m_valueOf;                     ///< none: of totals
    Column<double> m_column;               ///< of other values
    std::uint64_t m_totalsRevision = 0;
    std::size_t m_totals = 0;     ///< how many there were
    std::size_t m_lostTotals = 0; ///< how many the series had lost by then
};

} // namespace Tsb
