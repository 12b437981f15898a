#pragma once

#include <cstddef>
#include <cstdint>

/// The memory that a read may hold, in proportion to its bytes so far: a few bytes of a hostile file could ask for
/// gigabytes of empty slots, names or grids. The memory held is counted by estimates of the allocator's cost.
class MemoryBudget {
public:
    void addBytesRead(std::int64_t bytes) { m_bytesRead += bytes; }
    std::int64_t bytesRead() const { return m_bytesRead; }

    /// Counts memory that stays until the end of the read, beside the records themselves.
    void hold(std::size_t bytes) { m_held += bytes; }
    std::size_t held() const { return m_held; }
    /// Whether that many bytes more may be held beside that many records with values of that many bytes each.
    bool allows(std::size_t bytes, std::size_t records, std::size_t bytesPerRecord) const;
    /// The bytes that may still be held beside those records.
    std::size_t left(std::size_t records, std::size_t bytesPerRecord) const;

    // ---- the cost of things, in bytes
    static constexpr std::size_t perTreeNode = 110; ///< a short text in a list; a key of a map counts as one more
    static std::size_t ofName(int length) { return 160 + 2 * std::size_t(length); }
    /// A description of a spectrum of that many points: both axes, the slopes, and in the slabs between them the values
    /// from which they were computed.
    static std::size_t ofDescription(std::size_t points) { return 2048 + 6 * sizeof(double) * points; }
    /// A series of the store, with its histogram.
    static std::size_t ofSeries(std::size_t points) { return 34000 + sizeof(double) * points; }
    /// One spectrum with its diagonal of covariances, and its entry in a series.
    static std::size_t ofSpectrum(std::size_t points) { return 300 + 2 * sizeof(double) * points; }

private:
    std::size_t most(std::size_t records) const;

    std::int64_t m_bytesRead = 0;
    std::size_t m_held = 0;
};
