#pragma once

#include "axis/timescale.h"

#include <deque>
#include <optional>

namespace Tsb {

/// The spans of time that were looked at, to go back to: what stood before each finished gesture. A gesture that ends
/// where it began leaves nothing.
class ViewHistory {
public:
    static constexpr int greatestDepth = 50; ///< the oldest leave first

    struct Place {
        TimeScale scale;
        bool following; ///< the axis ran with the clock; the scale is then that of one moment
    };

    /// Nothing while a gesture is open.
    void begin(const Place &before);
    /// Nothing without an open gesture.
    void finish(const Place &reached);
    bool isOpen() const { return m_open.has_value(); }
    /// Whether goBack() would lead to another place than this one.
    bool hasPrevious(const Place &reached) const;
    /// The place before the last gesture, an open one included, which it ends; none at the start.
    std::optional<Place> goBack(const Place &reached);
    void clear();

private:
    std::optional<Place> m_open; ///< where the gesture at hand began
    std::deque<Place> m_places;
};

} // namespace Tsb
