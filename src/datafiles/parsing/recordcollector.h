#pragma once

#include "store/datastore.h"

#include <map>
#include <memory>
#include <vector>

/// Finds the records of a store by their begin while one file is read, and keeps the file's new records beside the
/// store until they are merged into it at once: records of a second mode fall between those of the first, and putting
/// each in its place alone would move half of the store every time.
///
/// Rows come nearly always in ascending order; a file in any other order is read with the same result and a logarithmic
/// cost a row.
class RecordCollector {
public:
    /// Without a store there never are records.
    explicit RecordCollector(Datastore *store) : m_store(store) {}

    /// The first record with exactly that begin, or null.
    std::shared_ptr<Record> find(RecordTime begin);
    /// Takes in a new record whose begin find() didn't know.
    void add(const std::shared_ptr<Record> &record);
    /// Gives the spectrum its entry in the store's series, at the next merge.
    void addSpectrum(const std::shared_ptr<Record> &record, const std::shared_ptr<SpectMath::Spectrum> &spectrum);

    /// Hands everything over to the store. Throws std::bad_alloc, and then the new records, or some of the spectra, are
    /// lost, and the store is sound.
    void merge();
    /// Forgets everything.
    void clear();

    /// What merge() would hand over: new records in ascending order, and spectra in the order of rows.
    struct News {
        std::vector<std::shared_ptr<Record>> records;
        std::vector<SpectrumRecord> spectra;
    };
    /// Gives it to a caller who hands it over to the store instead.
    News take();

    /// Records in the store and beside it.
    std::size_t recordCount() const
    {
        return (m_store ? std::size_t(m_store->size()) : 0) + m_ascending.size() + m_strays.size();
    }

private:
    Datastore *m_store;
    std::vector<std::shared_ptr<Record>> m_ascending;       ///< new records that came in order
    std::map<RecordTime, std::shared_ptr<Record>> m_strays; ///< new records that began before the one ahead of them
    std::vector<SpectrumRecord> m_spectra;                  ///< in the order of rows
};
