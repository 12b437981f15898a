#pragma once

#include <algorithm>

/// A run of pixel columns, `last` exclusive; empty when new. A plain value.
struct PixelRange {
    bool empty = true;
    int first = 0;
    int last = 0;

    PixelRange() = default;
    /// From two ends in any order.
    PixelRange(int a, int b) : empty(false), first(std::min(a, b)), last(std::max(a, b)) {}

    void clear() { *this = PixelRange(); }
    /// Grows to the smallest range that holds both. An empty range adds nothing.
    void unite(const PixelRange &other)
    {
        if (other.empty)
            return;
        *this = empty ? other : PixelRange(std::min(first, other.first), std::max(last, other.last));
    }
    void unite(int a, int b) { unite(PixelRange(a, b)); }
    /// The columns in common with a .. b; empty when there are none.
    PixelRange clipped(int a, int b) const
    {
        const int low = std::max(first, a), high = std::min(last, b);
        return empty || low >= high ? PixelRange() : PixelRange(low, high);
    }
    bool intersects(const PixelRange &other) const { return !other.empty && !clipped(other.first, other.last).empty; }
    PixelRange shifted(int n) const { return empty ? PixelRange() : PixelRange(first + n, last + n); }
    int width() const { return empty ? 0 : last - first; }
};

inline bool operator==(const PixelRange &a, const PixelRange &b)
{
    return a.empty == b.empty && (a.empty || (a.first == b.first && a.last == b.last));
}
inline bool operator!=(const PixelRange &a, const PixelRange &b)
{
    return !(a == b);
}
