#pragma once

#include "gui/browser/drawing/bargeometry.h"

#include <array>
#include <vector>

namespace Tsb {

/// Which bars that are wider than a column show at all, told from the last of them, which lies on top, to the first. A
/// store of records that all begin at the same time, as those of a clock that stood still, has a few that do and
/// hundreds of thousands that don't.
class BarHiding {
public:
    /// What of its columns a bar paints: the same as any other of its kind.
    struct Kind {
        bool outlined = true, filled = true, half = false;
    };

    /// For the columns first .. last - 1.
    BarHiding(int first, int last);

    /// Whether the bar shows beneath those that were seen so far, itself one of them then.
    bool isSeen(const BarEnds &ends, const Kind &kind);

private:
    /// How much lies on each column, and from which columns on there is less than enough.
    struct Columns {
        std::vector<int> layers;
        std::vector<int> open; ///< the next open column, or where to look on for it
    };
    int nextOpen(Columns &columns, int column);
    void cover(Columns &columns, int begin, int end, int layers);

    int m_first, m_last;
    std::array<Columns, 8> m_columns; ///< by kind
};

} // namespace Tsb
