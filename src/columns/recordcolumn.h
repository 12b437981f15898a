#pragma once

#include "columns/recordwalk.h"
#include "util/runontwothreads.h"
#include "util/valuequeue.h"

#include <algorithm>
#include <array>
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

    void setValueOf(ValueOf valueOf) { set(std::move(valueOf), {}, nullptr, nullptr); }
    /// Takes the values from the number in a slot, NaN where a record has none. Such columns are made fastest together.
    template<typename ValueOfNumber>
    void setValueOfNumber(RecordSlot slot, ValueOfNumber toValue)
    {
        const auto ofRecord = [=](const Record &record) {
            return toValue(RecordNumbers::of(record.*slot.vector).at(slot.slot));
        };
        const auto ofNumbers = [=](const RecordNumbers *begin, const RecordNumbers *end, T *place) {
            std::transform(begin, end, place,
                           [=](const RecordNumbers &numbers) { return toValue(numbers.at(slot.slot)); });
        };
        set(ofRecord, slot, ofNumbers, nullptr);
    }
    /// Takes the values from the records' marks. No record is read then.
    template<typename ValueOfMarks>
    void setValueOfMarks(ValueOfMarks valueOf)
    {
        const auto ofRecord = [valueOf](const Record &record) { return valueOf(RecordMarks::of(record)); };
        const auto ofMarks = [valueOf](const RecordMarks *begin, const RecordMarks *end, T *place) {
            std::transform(begin, end, place, valueOf);
        };
        set(ofRecord, {}, nullptr, ofMarks);
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
        bringUpToDate({this}, store);
        return m_column.data();
    }
    /// Brings columns of one store up to date together: the memory of the records, which takes most of the time, is
    /// read once for all of them.
    static void bringUpToDate(const std::vector<RecordColumn *> &columns, const Datastore &store)
    {
        const std::size_t size = store.records().size();
        std::vector<Stale> stale;
        for (RecordColumn *column : columns) {
            column->m_column.follow(store.lostRecords());
            if (column->m_column.isUpToDate(size))
                continue;
            const auto besideItsLike = std::find_if(stale.rbegin(), stale.rend(), [column](const Stale &other) {
                return other.column->m_reads.vector == column->m_reads.vector;
            });
            stale.insert(besideItsLike.base(), {column, column->m_column.renew(size)});
        }
        if (stale.empty())
            return;
        const bool needMarks =
            std::any_of(stale.begin(), stale.end(), [](const Stale &part) { return bool(part.column->m_ofMarks); });
        const RecordMarks *const marks = needMarks ? store.recordMarks() : nullptr;
        runOnTwoThreads(size, [&](std::size_t begin, std::size_t end) {
            for (; begin < end; begin += blockSize)
                workOut(stale, store.records(), marks, begin, std::min(end, begin + blockSize));
        });
    }
    /// A number that grows with each change of the values.
    std::uint64_t revision() const { return m_column.revision(); }

private:
    /// Such a function takes many at once, because one of them costs less than a call.
    template<typename Source>
    using ValuesOf = std::function<void(const Source *begin, const Source *end, T *place)>;
    struct Stale {
        const RecordColumn *column;
        T *values; ///< the places of all
    };
    /// Records whose numbers fit into a fast cache.
    static constexpr std::size_t blockSize = 512;

    void set(ValueOf ofRecord, RecordSlot reads, ValuesOf<RecordNumbers> ofNumbers, ValuesOf<RecordMarks> ofMarks)
    {
        m_valueOf = std::move(ofRecord);
        m_reads = reads;
        m_ofNumbers = std::move(ofNumbers);
        m_ofMarks = std::move(ofMarks);
        invalidate();
    }

    /// Sets the values of a block's records in all of the columns.
    static void workOut(const std::vector<Stale> &stale, const Datastore::Records &records, const RecordMarks *marks,
                        std::size_t begin, std::size_t end)
    {
        std::array<RecordNumbers, blockSize> numbers;
        RealVector Record::*found = nullptr; // whose numbers these are
        for (const Stale &part : stale) {
            const RecordColumn &column = *part.column;
            T *place = part.values + begin;
            if (column.m_ofMarks) {
                column.m_ofMarks(marks + begin, marks + end, place);
            } else if (column.m_ofNumbers) {
                const auto vector = column.m_reads.vector;
                if (found != vector)
                    walkRecords(records, begin, end, vector, [&, next = numbers.begin()](const Record &record) mutable {
                        *next++ = RecordNumbers::of(record.*vector);
                    });
                found = vector;
                column.m_ofNumbers(numbers.data(), numbers.data() + (end - begin), place);
            } else {
                walkRecords(records, begin, end, &Record::opmode,
                            [&](const Record &record) { *place++ = column.m_valueOf(record); });
            }
        }
    }

    ValueOf m_valueOf;
    RecordSlot m_reads;                  ///< the source of the numbers
    ValuesOf<RecordNumbers> m_ofNumbers; ///< null unless a number tells the value
    ValuesOf<RecordMarks> m_ofMarks;     ///< null unless marks tell it: no record is read then
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
