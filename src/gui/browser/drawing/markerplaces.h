#pragma once

#include "axis/valuescale.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tsb {

/// A marker's place in its column of an image: a row, or one of the three below.
using MarkerPlace = std::uint16_t;

namespace MarkerPlaces {

constexpr MarkerPlace nowhere = 0;
constexpr MarkerPlace aboveTop = 1;
constexpr MarkerPlace belowBottom = 2;
/// Of row 0; one place before stays empty.
constexpr MarkerPlace firstRow = 4;
constexpr int mostRows = 65'000;

/// The places of values on a scale, in an image of that many rows. A NaN has none.
void of(const ValueScale &scale, int height, const double *values, std::size_t count, MarkerPlace *places);

} // namespace MarkerPlaces

/// The places of a whole column of values, worked out once for a scale and a height: a change of the time scale draws
/// the same places again, at a quarter of the memory to be read.
class MarkerPlaceColumn {
public:
    /// One place for each value, until the next call. The revision is another one whenever values have changed. Null
    /// the first time that these are asked for: while a scale is dragged, no places are drawn a second time.
    const MarkerPlace *places(const ValueScale &scale, int height, const double *values, std::size_t count,
                              std::uint64_t revision);

private:
    std::vector<MarkerPlace> m_places; ///< from the other members, or empty
    ValueScale m_scale;
    int m_height = -1;
    std::uint64_t m_revision = 0;
    std::size_t m_count = 0;
};

} // namespace Tsb
