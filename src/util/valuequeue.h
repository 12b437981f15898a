#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

/// An allocator that leaves new elements without a value uninitialized.
template<typename T>
struct UnsetAllocator : std::allocator<T> {
    template<typename U>
    struct rebind {
        using other = UnsetAllocator<U>;
    };
    template<typename U, typename... Args>
    void construct(U *place, Args &&...args)
    {
        if constexpr (sizeof...(Args) == 0)
            ::new (static_cast<void *>(place)) U;
        else
            ::new (static_cast<void *>(place)) U(std::forward<Args>(args)...);
    }
};

/// Values one after the other in memory. Taking one away at the front costs a constant time on average: the room of the
/// lost ones is used again once it is as large as that of the others.
template<typename T>
class ValueQueue {
public:
    std::size_t size() const { return m_values.size() - m_front; }
    const T *data() const { return m_values.data() + m_front; }

    /// Sets the number of values to `size`. The caller must set each of them.
    T *unset(std::size_t size)
    {
        m_values.clear();
        m_front = 0;
        m_values.resize(size);
        return m_values.data();
    }
    void set(std::size_t i, const T &value) { m_values[m_front + i] = value; }
    /// Moves the values from i on by one place.
    void insert(std::size_t i, const T &value)
    {
        m_values.insert(m_values.begin() + std::ptrdiff_t(m_front + i), value);
    }
    /// The same for a value that may lie beyond the end, of which nothing is kept then. Far from the end, or without
    /// memory, it forgets the values behind instead.
    void insertOrForget(std::size_t i, const T &value) noexcept
    {
        constexpr std::size_t farFromEnd = 4096;
        if (i > size())
            return;
        if (size() - i > farFromEnd)
            return truncate(i);
        try {
            insert(i, value);
        } catch (const std::bad_alloc &) {
            truncate(i);
        }
    }
    /// Makes room for that many values, so that insert() doesn't fail before that number.
    void reserve(std::size_t size)
    {
        if (m_front + size > m_values.capacity())
            m_values.reserve(std::max(m_front + size, 2 * m_values.capacity()));
    }
    /// Forgets the values from `size` on; not more than there are.
    void truncate(std::size_t size) { m_values.resize(m_front + size); }
    /// `count` is at most size().
    void removeFirst(std::size_t count)
    {
        m_front += count;
        if (m_front < size())
            return;
        m_values.erase(m_values.begin(), m_values.begin() + std::ptrdiff_t(m_front));
        m_front = 0;
    }

private:
    std::vector<T, UnsetAllocator<T>> m_values;
    std::size_t m_front = 0; ///< values at the front that were taken away
};
