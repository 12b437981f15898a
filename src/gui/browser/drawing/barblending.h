#pragma once

#include <QRgb>

#include <cstdint>

namespace Tsb {

/// x * alpha / 255 for numbers to 255, rounded as the raster engine rounds it. For whole numbers of 16 bits or more, or
/// several of them side by side.
template<typename Number>
inline Number multiplied(Number x, Number alpha)
{
    const Number t = x * alpha;
    return (t + (t >> 8) + 0x80) >> 8;
}

/// A channel after a bar without width was drawn upon it: two lines, one upon the other.
template<typename Number>
inline Number underTwoLines(Number below, Number color, Number alpha)
{
    const Number over = multiplied(color, alpha);
    const Number open = 255 - alpha;
    const Number once = over + multiplied(below, open);
    return over + multiplied(once, open);
}

} // namespace Tsb
