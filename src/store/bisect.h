#pragma once

#include <cstddef>

/// The first of `count` elements that isn't below the key. Both ends are looked at first, so that appending in order of
/// time costs two looks.
template<typename IsBelow>
std::size_t bisect(std::size_t count, IsBelow isBelow)
{
    if (count == 0 || !isBelow(0))
        return 0;
    if (isBelow(count - 1))
        return count;
    std::size_t low = 0;
    std::size_t high = count - 1;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        (isBelow(middle) ? low : high) = middle;
    }
    return high;
}
