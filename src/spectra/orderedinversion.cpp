#include "spectra/orderedinversion.h"

#include "util/alternatestack.h"
#include "util/workerthread.h"

#include <algorithm>
#include <new>
#include <system_error>

namespace SpectMath {

namespace {

constexpr std::size_t batchSize = 32;
constexpr std::size_t batchesPerThread = 4;

} // namespace

OrderedInversion::OrderedInversion(const Records &records, const InverterList &inverters,
                                   const Spectrometer::RecordMetadata &metadata, int threads)
    : m_records(records), m_inverters(inverters), m_metadata(metadata),
      m_batchCount((records.size() + batchSize - 1) / batchSize)
{
    const std::size_t count = std::min(std::size_t(std::max(threads, 1)), std::max<std::size_t>(m_batchCount, 1));
    m_ring.resize(count * batchesPerThread);
    try {
        for (std::size_t i = 0; i < count; ++i)
            m_threads.emplace_back([this] {
                const AlternateStack stack;
                work();
            });
    } catch (const std::system_error &) { // no more threads: those that there are do it, or the caller
    } catch (const std::bad_alloc &) {
    }
}

OrderedInversion::~OrderedInversion()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_hasRoom.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void OrderedInversion::invert(std::size_t number, Batch &batch) const
{
    const std::size_t first = number * batchSize;
    const std::size_t end = std::min(first + batchSize, m_records.size());
    batch.results.reserve(end - first);
    for (std::size_t i = first; i < end && !m_stop; ++i) {
        const auto complain = [&](int level, const QString &text) {
            batch.complaints.push_back({i - first, level, text});
        };
        const Record &record = *m_records[i];
        batch.results.push_back(record.interim ? nullptr : invertRecord(m_inverters, record, m_metadata, complain));
    }
    batch.ready = true;
}

void OrderedInversion::work()
{
    for (;;) {
        std::size_t number;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_hasRoom.wait(lock,
                           [this] { return m_stop || m_begun == m_batchCount || m_begun < m_taken + m_ring.size(); });
            if (m_stop || m_begun == m_batchCount)
                return;
            number = m_begun++;
        }
        Batch batch;
        try {
            invert(number, batch);
        } catch (const std::bad_alloc &) {
            batch = Batch();
            batch.ready = batch.lacksMemory = true;
        }
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_ring[number % m_ring.size()] = std::move(batch);
            m_isReady.notify_one(); // under the lock: nothing is touched behind it
        }
    }
}

void OrderedInversion::takeBatch()
{
    if (m_threads.empty()) {
        m_current = Batch();
        invert(m_taken, m_current);
        ++m_taken;
    } else {
        std::unique_lock<std::mutex> lock(m_mutex);
        Batch &oldest = m_ring[m_taken % m_ring.size()];
        m_isReady.wait(lock, [&oldest] { return oldest.ready; });
        m_current = std::move(oldest);
        oldest = Batch();
        ++m_taken;
    }
    m_hasRoom.notify_all();
    m_place = m_complaint = 0;
}

bool OrderedInversion::next(SpectrumRecordPointer &result, const InversionComplaint &complain)
{
    if (m_place == m_current.results.size()) {
        if (m_taken == m_batchCount) // only this thread changes it
            return false;
        takeBatch();
        if (m_current.lacksMemory)
            throw std::bad_alloc();
    }
    while (m_complaint < m_current.complaints.size() && m_current.complaints[m_complaint].place == m_place) {
        const Complaint &complaint = m_current.complaints[m_complaint++];
        complain(complaint.level, complaint.text);
    }
    result = std::move(m_current.results[m_place++]);
    return true;
}

} // namespace SpectMath
