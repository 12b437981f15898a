#include "util/slabarray.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include <pthread.h>
#include <sys/mman.h>

#if defined(__SANITIZE_ADDRESS__)
#define SLAB_USES_HEAP 1 // so that the sanitizer sees the bounds of each piece
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SLAB_USES_HEAP 1
#endif
#endif

namespace {

constexpr std::size_t slabSize = std::size_t(2) << 20;
constexpr std::size_t pieceAlignment = 8;
[[maybe_unused]] constexpr std::size_t largestShared = slabSize / 8; // larger pieces get a mapping of their own
// A slab in use starts with far more references than it can hold pieces; what wasn't handed out is taken off at its
// end.
constexpr std::int64_t bias = std::int64_t(1) << 40;

struct SlabHead {
    std::atomic<std::int64_t> references;
    std::size_t mappedBytes;
};
constexpr std::size_t headBytes = 64;
static_assert(sizeof(SlabHead) <= headBytes, "the head fits in front of the first piece");

std::size_t roundUp(std::size_t bytes, std::size_t unit)
{
    return (bytes + unit - 1) / unit * unit;
}

/// Maps `bytes` (a multiple of the page size) at a multiple of slabSize, so that a piece finds its slab by its address.
char *mapAligned(std::size_t bytes)
{
    const std::size_t reserved = bytes + slabSize;
    void *raw = mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (raw == MAP_FAILED)
        throw std::bad_alloc();
    char *begin = static_cast<char *>(raw);
    char *aligned = reinterpret_cast<char *>(roundUp(reinterpret_cast<std::uintptr_t>(begin), slabSize));
    if (aligned > begin)
        munmap(begin, std::size_t(aligned - begin));
    char *end = begin + reserved;
    if (end > aligned + bytes)
        munmap(aligned + bytes, std::size_t(end - (aligned + bytes)));
    return aligned;
}

SlabHead *makeSlab(std::size_t bytes, std::int64_t references)
{
    char *memory = mapAligned(bytes);
    if (bytes == slabSize)
        madvise(memory, bytes, MADV_HUGEPAGE); // the first touch of many small pages costs more than parsing a row
    auto *head = new (memory) SlabHead;
    head->mappedBytes = bytes;
    head->references.store(references, std::memory_order_relaxed);
    return head;
}

[[maybe_unused]] SlabHead *slabOf(void *piece)
{
    return reinterpret_cast<SlabHead *>(reinterpret_cast<std::uintptr_t>(piece) & ~std::uintptr_t(slabSize - 1));
}

void dropReferences(SlabHead *slab, std::int64_t count)
{
    if (slab->references.fetch_sub(count, std::memory_order_acq_rel) == count)
        munmap(slab, slab->mappedBytes);
}

/// The slab that one thread is cutting.
class Cutter {
public:
    void *cut(std::size_t bytes)
    {
        for (Returned &returned : m_returned)
            if (returned.bytes == bytes && returned.count > 0)
                return returned.take();
        if (!m_slab || m_used + bytes > slabSize) {
            retire();
            retireAtEnd();
            m_slab = makeSlab(slabSize, bias);
            m_used = headBytes;
            m_handedOut = 0;
        }
        void *piece = reinterpret_cast<char *>(m_slab) + m_used;
        m_used += bytes;
        ++m_handedOut;
        return piece;
    }

    /// Takes back a piece of the slab that is being cut; false if it is of another one. What a view works out for a
    /// moment while records come in would leave holes between them.
    bool giveBack(void *piece, std::size_t bytes)
    {
        if (!m_slab || slabOf(piece) != m_slab)
            return false;
        if (static_cast<char *>(piece) + bytes == reinterpret_cast<char *>(m_slab) + m_used) {
            m_used -= bytes;
            --m_handedOut;
            return true;
        }
        returnedOf(bytes).add(piece);
        return true;
    }

private:
    /// Pieces of one size that are to be handed out again; still of those handed out. Each begins with the address of
    /// the next.
    struct Returned {
        std::size_t bytes = 0;
        std::int64_t count = 0;
        void *first = nullptr;

        void add(void *piece)
        {
            first = new (piece) Link{first};
            ++count;
        }
        void *take()
        {
            --count;
            return std::exchange(first, static_cast<Link *>(first)->next);
        }
    };
    struct Link {
        void *next;
    };

    /// The list of that size, in the place of another size's if there is none.
    Returned &returnedOf(std::size_t bytes)
    {
        for (Returned &returned : m_returned)
            if (returned.bytes == bytes)
                return returned;
        Returned &place = m_returned[m_nextReturned++ % m_returned.size()];
        if (place.count > 0)
            dropReferences(m_slab, place.count);
        place = {bytes, 0, nullptr};
        return place;
    }

    /// Not by a destructor: the C library ends the process where it finds no memory to take note of a thread's first
    /// one. Of its keys it can keep some in the thread itself.
    void retireAtEnd()
    {
        static const pthread_key_t key = [] {
            pthread_key_t made;
            if (pthread_key_create(&made, [](void *cutter) { static_cast<Cutter *>(cutter)->retire(); }) != 0)
                throw std::bad_alloc();
            return made;
        }();
        if (pthread_setspecific(key, this) != 0)
            throw std::bad_alloc();
    }
    void retire()
    {
        for (Returned &returned : m_returned)
            m_handedOut -= std::exchange(returned, Returned()).count;
        if (m_slab)
            dropReferences(m_slab, bias - m_handedOut);
        m_slab = nullptr;
    }

    SlabHead *m_slab = nullptr;
    std::size_t m_used = 0;
    std::int64_t m_handedOut = 0;
    std::array<Returned, 8> m_returned;
    unsigned m_nextReturned = 0;
};

#ifndef SLAB_USES_HEAP
thread_local Cutter cutter;
#endif

} // namespace

void *Slab::allocate(std::size_t bytes)
{
    const std::size_t size = roundUp(std::max<std::size_t>(bytes, 1), pieceAlignment);
    if (size < bytes || size > std::size_t(-1) / 2)
        throw std::bad_alloc();
#ifdef SLAB_USES_HEAP
    return ::operator new(size);
#else
    if (size <= largestShared)
        return cutter.cut(size);
    return reinterpret_cast<char *>(makeSlab(roundUp(size + headBytes, 4096), 1)) + headBytes;
#endif
}

void Slab::release(void *piece, std::size_t bytes) noexcept
{
    if (!piece)
        return;
#ifdef SLAB_USES_HEAP
    (void)bytes;
    ::operator delete(piece);
#else
    const std::size_t size = roundUp(std::max<std::size_t>(bytes, 1), pieceAlignment);
    if (size <= largestShared && cutter.giveBack(piece, size))
        return;
    dropReferences(slabOf(piece), 1);
#endif
}

namespace {

double *allocateDoubles(std::size_t size)
{
    if (size == 0)
        return nullptr;
    if (size > std::size_t(-1) / sizeof(double))
        throw std::bad_alloc();
    return static_cast<double *>(Slab::allocate(size * sizeof(double)));
}

void releaseDoubles(double *data, std::size_t size)
{
    Slab::release(data, size * sizeof(double));
}

} // namespace

SlabArray::SlabArray(size_type size) : SlabArray(size, 0.0) {}

SlabArray::SlabArray(size_type size, double fill) : m_data(allocateDoubles(size)), m_size(size)
{
    std::fill(begin(), end(), fill);
}

SlabArray::SlabArray(const SlabArray &other) : m_data(allocateDoubles(other.m_size)), m_size(other.m_size)
{
    std::copy(other.begin(), other.end(), m_data);
}

SlabArray::SlabArray(SlabArray &&other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0))
{
}

SlabArray::~SlabArray()
{
    releaseDoubles(m_data, m_size);
}

SlabArray &SlabArray::operator=(const SlabArray &other)
{
    if (m_size == other.m_size)
        std::copy(other.begin(), other.end(), m_data);
    else
        SlabArray(other).swap(*this);
    return *this;
}

SlabArray &SlabArray::operator=(SlabArray &&other) noexcept
{
    swap(other);
    return *this;
}

SlabArray &SlabArray::assign_temporary(SlabArray &other) noexcept
{
    swap(other);
    return *this;
}

void SlabArray::resize(size_type size)
{
    resize(size, 0.0);
}

void SlabArray::resize(size_type size, double fill)
{
    if (size == m_size)
        return;
    SlabArray grown;
    grown.m_data = allocateDoubles(size);
    grown.m_size = size;
    const size_type kept = std::min(size, m_size);
    std::copy(m_data, m_data + kept, grown.m_data);
    std::fill(grown.m_data + kept, grown.m_data + size, fill);
    swap(grown);
}

void SlabArray::swap(SlabArray &other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
}
