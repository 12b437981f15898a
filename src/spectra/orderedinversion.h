#pragma once

#include "records/record.h"
#include "spectra/recordinversion.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace SpectMath {

/// Inverts many records on threads of its own and hands out the results in the records' order, for any number of
/// threads. For callers without an event loop that want all results one after the other: only a few batches per thread
/// are ever held, and threads that are too far ahead wait. Records, inverters and metadata must outlive it and not
/// change. Fewer threads do where the system gives no more; without any the caller's inverts.
class OrderedInversion {
public:
    using Records = std::deque<std::shared_ptr<Record>>;

    OrderedInversion(const Records &records, const InverterList &inverters,
                     const Spectrometer::RecordMetadata &metadata, int threads);
    /// Ends the threads; no record is begun any more.
    ~OrderedInversion();

    /// The next record's result, which is null for an interim record; false behind the last. Complaints about it are
    /// handed on by the calling thread. Throws bad_alloc, also where a thread of its own lacked the memory for some
    /// results; the records of these are passed over.
    bool next(SpectrumRecordPointer &result, const InversionComplaint &complain);

private:
    struct Complaint {
        std::size_t place; ///< in the batch
        int level;
        QString text;
    };
    struct Batch {
        bool ready = false;
        bool lacksMemory = false; ///< and has no results
        std::vector<SpectrumRecordPointer> results;
        std::vector<Complaint> complaints;
    };

    void work();
    void invert(std::size_t number, Batch &batch) const;
    void takeBatch();

    const Records &m_records;
    const InverterList &m_inverters;
    const Spectrometer::RecordMetadata &m_metadata;
    const std::size_t m_batchCount;

    std::mutex m_mutex; ///< guards all that follows but m_stop and the caller's
    std::condition_variable m_isReady;
    std::condition_variable m_hasRoom;
    std::vector<Batch> m_ring; ///< batch n in place n modulo its size
    std::size_t m_begun = 0;
    std::size_t m_taken = 0;
    std::atomic<bool> m_stop{false};

    Batch m_current; ///< the caller's
    std::size_t m_place = 0;
    std::size_t m_complaint = 0;
    std::vector<std::thread> m_threads;
};

} // namespace SpectMath
