#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>

/// Memory for the many small arrays and objects of a store: pieces cut one after the other from slabs of 2 MB, each
/// slab given back as a whole when the last of its pieces is released. A piece costs no header. Cutting is per thread
/// and takes no lock; a piece may be released on any thread. What a thread released of the slab that it is cutting is
/// handed out again for the same size, of the last eight sizes. The objects should live long and go together: one small
/// piece that outlives its neighbours keeps its slab.
namespace Slab {
/// 8-byte aligned, contents undefined. Throws std::bad_alloc.
void *allocate(std::size_t bytes);
/// `bytes` is the size that was asked for.
void release(void *piece, std::size_t bytes) noexcept;
} // namespace Slab

/// Slab memory for std::allocate_shared.
template<typename T>
struct SlabAllocator {
    static_assert(alignof(T) <= 8, "slab pieces are 8-byte aligned");
    using value_type = T;

    SlabAllocator() = default;
    template<typename U>
    SlabAllocator(const SlabAllocator<U> &) noexcept
    {
    }

    T *allocate(std::size_t n) { return static_cast<T *>(Slab::allocate(n * sizeof(T))); }
    void deallocate(T *p, std::size_t n) noexcept { Slab::release(p, n * sizeof(T)); }
    friend bool operator==(SlabAllocator, SlabAllocator) noexcept { return true; }
    friend bool operator!=(SlabAllocator, SlabAllocator) noexcept { return false; }
};

/// One object in slab memory. Members without an initializer have no value.
template<typename T>
struct SlabDelete {
    void operator()(T *object) const noexcept
    {
        object->~T();
        Slab::release(object, sizeof(T));
    }
};
template<typename T>
using SlabPointer = std::unique_ptr<T, SlabDelete<T>>;
template<typename T>
SlabPointer<T> makeInSlab()
{
    static_assert(alignof(T) <= 8, "slab pieces are 8-byte aligned");
    return SlabPointer<T>(new (Slab::allocate(sizeof(T))) T);
}

/// An array of doubles in slab memory, as the storage of uBLAS vectors and banded matrices:
/// boost::numeric::ublas::vector<double, SlabArray>. New elements of resize(n, fill) take the fill value, those of
/// resize(n) and SlabArray(n) are zero.
class SlabArray {
public:
    using allocator_type = void;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using value_type = double;
    using const_reference = const double &;
    using reference = double &;
    using const_pointer = const double *;
    using pointer = double *;
    using const_iterator = const double *;
    using iterator = double *;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;
    using reverse_iterator = std::reverse_iterator<iterator>;

    SlabArray() = default;
    explicit SlabArray(size_type size);
    SlabArray(size_type size, double fill);
    SlabArray(const SlabArray &other);
    SlabArray(SlabArray &&other) noexcept;
    ~SlabArray();
    SlabArray &operator=(const SlabArray &other);
    SlabArray &operator=(SlabArray &&other) noexcept;
    SlabArray &assign_temporary(SlabArray &other) noexcept;

    void resize(size_type size);
    void resize(size_type size, double fill);
    size_type max_size() const { return std::size_t(-1) / sizeof(double); }
    bool empty() const { return m_size == 0; }
    size_type size() const { return m_size; }

    const_reference operator[](size_type i) const { return m_data[i]; }
    reference operator[](size_type i) { return m_data[i]; }

    const_iterator begin() const { return m_data; }
    const_iterator end() const { return m_data + m_size; }
    const_iterator cbegin() const { return m_data; }
    const_iterator cend() const { return m_data + m_size; }
    iterator begin() { return m_data; }
    iterator end() { return m_data + m_size; }
    const_reverse_iterator rbegin() const { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const { return const_reverse_iterator(begin()); }
    reverse_iterator rbegin() { return reverse_iterator(end()); }
    reverse_iterator rend() { return reverse_iterator(begin()); }

    void swap(SlabArray &other) noexcept;
    friend void swap(SlabArray &a, SlabArray &b) noexcept { a.swap(b); }

private:
    double *m_data = nullptr;
    size_type m_size = 0;
};
