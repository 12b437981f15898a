#pragma once

#include "columns/recordwalk.h"
#include "util/runontwothreads.h"
#include "util/valuequeue.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace Tsb {

/// Values kept in step with a sequence that loses entries at its front only, and counts them.
template<typename T>
class Column {
public:
    bool isStale() const { return m_stale; }
    void invalidate() { m_stale = true; }
    std::size_t size() const { return m_values.size(); }
    const T *data() const { return m_values.data(); }
    /// A number that grows with each change of the values.
    std::uint64_t revision() const { return m_revision; }

    /// Takes away the values of lost entries. `lostSoFar` counts all entries that the sequence has lost yet.
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
    /// Sets the value of entry i, which came in or changed. The sequence has `size` entries by now.
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
    /// Works all values out anew if they are stale or their number differs from `size`: fill(begin, end, place) writes
    /// the values of the entries begin .. end - 1. Large columns call it on two threads.
    template<typename Fill>
    void bringUpToDate(std::size_t size, Fill fill)
    {
        if (isUpToDate(size))
            return;
        T *const values = renew(size);
        runOnTwoThreads(size,
                        [&fill, values](std::size_t begin, std::size_t end) { fill(begin, end, values + begin); });
    }
    bool isUpToDate(std::size_t size) const { return !m_stale && m_values.size() == size; }
    /// The places of so many values, each of which the caller sets.
    T *renew(std::size_t size)
    {
        m_stale = false;
        ++m_revision;
        return m_values.unset(size);
    }

private:
    ValueQueue<T> m_values;
    std::size_t m_lost = 0;
    std::uint64_t m_revision = 0;
    bool m_stale = true;
};

/// One value for each record of a store, kept in step with it, so that drawing doesn't touch the records. After
/// invalidate() the next call of values() works them out anew.
template<typename T>
class RecordColumn {
public:
    /// May be called from two threads at once.
    using ValueOf = std::function<T(const Record &)>;

    /// `reads` is the slot that the function reads, if it reads one: the column is made faster then.
    void setValueOf(ValueOf valueOf, RecordSlot reads = {})
    {
        m_valueOf = std::move(valueOf);
        m_valuesOfMarks = nullptr;
        m_reads = reads;
        invalidate();
    }
    /// Takes the values from the records' marks. No record is read then.
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
    const RecordSlot &reads() const { return m_reads; }
    T valueOf(const Record &record) const { return m_valueOf(record); }

    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, int index, const Record &record)
    {
        m_column.follow(store.lostRecords());
        if (!m_column.isStale())
            m_column.note(std::size_t(index), std::size_t(store.size()), m_valueOf(record));
    }
    /// One value for each record. The pointer is valid until the store changes.
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
    /// Brings columns of one store up to date together: the memory of the records, which takes most of the time, is
    /// read once for all of them.
    static void bringUpToDate(const std::vector<RecordColumn *> &columns, const Datastore &store)
    {
        constexpr std::size_t blockSize = 512; // records whose numbers fit into a fast cache
        std::vector<std::pair<const RecordColumn *, T *>> stale;
        const std::size_t size = store.records().size();
        for (RecordColumn *column : columns) {
            column->m_column.follow(store.lostRecords());
            if (!column->m_valuesOfMarks && !column->m_column.isUpToDate(size))
                stale.emplace_back(column, column->m_column.renew(size));
        }
        runOnTwoThreads(stale.empty() ? 0 : size, [&](std::size_t begin, std::size_t end) {
            for (std::size_t from = begin; from < end; from += blockSize) {
                for (const auto &part : stale) {
                    T *place = part.second + from;
                    const ValueOf &valueOf = part.first->m_valueOf;
                    walkRecords(store.records(), from, std::min(end, from + blockSize), part.first->m_reads,
                                [&](const Record &record) { *place++ = valueOf(record); });
                }
            }
        });
    }
    /// A number that grows with each change of the values.
    std::uint64_t revision() const { return m_column.revision(); }

private:
    ValueOf m_valueOf;
    /// Null unless marks tell the values. Takes many marks at once, because a mark costs less than a call.
    std::function<void(const RecordMarks *begin, const RecordMarks *end, T *place)> m_valuesOfMarks;
    RecordSlot m_reads;
    Column<T> m_column;
};

/// One value for each entry of a spectrum series, kept in step. The store holds total concentrations itself.
class SeriesColumn {
public:
    /// May be called from two threads at once.
    using ValueOf = std::function<double(const SpectMath::Spectrum &)>;

    /// Takes the values from the spectra.
    SeriesColumn(SpectMath::SpectrumInfoPointer info, ValueOf valueOf)
        : m_info(std::move(info)), m_valueOf(std::move(valueOf))
    {
    }
    /// The total concentrations, by decadesOf().
    static SeriesColumn ofTotalDecades(SpectMath::SpectrumInfoPointer info) { return {std::move(info), nullptr}; }

    const SpectMath::SpectrumInfo *key() const { return m_info.get(); }
    /// For Datastore::updated.
    void noteUpdated(const Datastore &store, const std::shared_ptr<Record> &record);
    /// One value for each entry. The pointer is valid until the store changes.
    const double *values(const Datastore &store);
    /// A number that grows with each change of the values.
    std::uint64_t revision() const { return isOfTotals() ? m_totalsRevision : m_column.revision(); }

private:
    bool isOfTotals() const { return !m_valueOf; }
    double valueAt(const SpectrumRecord &entry) const;
    const double *totals(const Datastore &store);

    SpectMath::SpectrumInfoPointer m_info; ///< held, so that the key isn't given to another description
    ValueOf m_valueOf;                     ///< none in a column of totals
    Column<double> m_column;               ///< unused in a column of totals
    std::uint64_t m_totalsRevision = 0;
    std::size_t m_totals = 0;     ///< their number at the last look
    std::size_t m_lostTotals = 0; ///< entries that the series had lost by then
};

} // namespace Tsb
