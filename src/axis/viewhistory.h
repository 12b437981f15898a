#pragma once

#include "axis/timescale.h"

#include <deque>
#include <optional>

namespace Tsb {

/// The way back along the time axis: the place before each finished gesture. A gesture that ends where it began leaves
/// no place.
class ViewHistory {
public:
    static constexpr int greatestDepth = 50; ///< the oldest leave first

    struct Place {
        TimeScale scale;
        bool following; ///< the axis ran with the clock; the scale is then that of one moment
    };

    /// Does nothing while a gesture is open.
    void begin(const Place &before);
    /// Does nothing without an open gesture.
    void finish(const Place &reached);
    bool isOpen() const { return m_open.has_value(); }
    /// True if goBack() would lead to another place than this one.
    bool hasPrevious(const Place &reached) const;
    /// The place before the last gesture, an open one included, which it ends; none at the start.
    std::optional<Place> goBack(const Place &reached);
    void clear();

private:
    std::optional<Place> m_open; ///< the place at the begin of the open gesture
    std::deque<Place> m_places;
};

} // namespace Tsb
