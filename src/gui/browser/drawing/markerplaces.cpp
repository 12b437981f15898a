#include "gui/browser/drawing/markerplaces.h"

#include "util/functionclones.h"

namespace Tsb {

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void MarkerPlaces::of(const ValueScale &scale, int height, const double *values, std::size_t count, MarkerPlace *places)
{
    const double rows = height, bottom = height - 1;
    const ValueScale by = scale; // a copy that nothing written here can change
    for (std::size_t i = 0; i < count; ++i) {
        const double row = rows - by.pixel(values[i]);
        const double rounded = row + 0.5; // halves up
        double place = nowhere;
        place = row >= 0 ? rounded + firstRow : place;
        place = row < 0 ? aboveTop : place;
        place = row > bottom ? belowBottom : place;
        places[i] = MarkerPlace(int(place));
    }
}

const MarkerPlace *MarkerPlaceColumn::places(const ValueScale &scale, int height, const double *values,
                                             std::size_t count, std::uint64_t revision)
{
    if (m_revision != revision || m_count != count || m_height != height || m_scale != scale) {
        m_places.clear();
        m_revision = revision;
        m_count = count;
        m_height = height;
        m_scale = scale;
        return nullptr;
    }
    if (m_places.size() != count) {
        m_places.resize(count);
        MarkerPlaces::of(scale, height, values, count, m_places.data());
    }
    return m_places.data();
}

} // namespace Tsb
