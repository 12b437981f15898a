#pragma once

#include "gui/browser/drawing/bargeometry.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Tsb {

/// Rows of a strip that bars without width cover alike are worked out together: so many classes of rows at once.
constexpr std::size_t rowClasses = 8;
/// A number for each class.
using PerRowClass = std::int16_t __attribute__((vector_size(2 * rowClasses)));

inline bool isNone(PerRowClass conditions)
{
    using Words = std::int64_t __attribute__((vector_size(2 * rowClasses)));
    const Words words = reinterpret_cast<Words>(conditions);
    return (words[0] | words[1]) == 0;
}

/// What a bar without width covers of one column.
struct BarStamp {
    PerRowClass alphas; ///< coverage by one of the two lines that the bar consists of, 0 .. 255
    PerRowClass losses; ///< how much of what lies beneath both hide, on the scale of hidingLoss
};

/// Losses add up, as the logarithms of the shares that are left. At this sum, what lies beneath may be hidden: it
/// weighs half a step of a channel.
constexpr std::int16_t hidingLoss = 16000;
constexpr double hiddenWeight = 1.0 / 512;

/// What the raster engine makes of bars without width in strips of one height, learned from it.
class BarStamps {
public:
    static constexpr int columns = 3; ///< that a bar's middle may lie in: the column itself, and its neighbours
    static constexpr int positions = columns * barPhases;

    void prepare(int height);

    /// By the position of the bar's middle, in phases from the left of the column in front.
    const BarStamp *ofPositions(bool half) const { return m_stamps[half].data(); }
    /// The positions that touch the column.
    struct Reach {
        int first = 0, count = 0;
    };
    Reach reach() const { return m_reach; }
    /// -1 for each class that such bars touch, 0 for the others.
    PerRowClass touched(bool half) const { return m_touched[half]; }
    /// By row; -1 for rows that no bar touches.
    const std::vector<int> &classOfRow() const { return m_classOfRow; }

private:
    int m_height = -1;
    std::vector<int> m_classOfRow;
    std::array<std::array<BarStamp, positions>, 2> m_stamps;
    Reach m_reach;
    PerRowClass m_touched[2];
};

} // namespace Tsb
