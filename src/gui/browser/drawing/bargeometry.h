#pragma once

#include "axis/timescale.h"

#include "store/spanindex.h"

#include <QRectF>

namespace Tsb {

/// A bar's ends as they are drawn: half a pixel in from both sides, and without width where that leaves nothing.
struct BarEnds {
    double x0 = 0, x1 = 0;
    bool hasWidth() const { return x1 > x0; }
};

/// The ends of a bar between two ticks, in columns.
BarEnds barEnds(const TimeScale &scale, std::int64_t begin, std::int64_t end);

double barHeight(int stripHeight, bool half);

/// What is drawn of a bar, held near the columns first .. last - 1.
QRectF barRect(const BarEnds &ends, int stripHeight, bool half, int first, int last);

/// The raster engine tells so many positions within a column apart.
constexpr int barPhaseBits = 6;
constexpr int barPhases = 1 << barPhaseBits;

/// Where the middles of bars without width lie: the phases of a column from the left of one column on.
class BarMiddles {
public:
    BarMiddles(const TimeScale &scale, int column);

    /// Of bars that ascend in their begins: in phases; far from the column, only that it is so.
    void find(const SpanIndex::Times &bars, int *middles) const;

private:
    bool areNear(const SpanIndex::Times &bars) const;
    int exactMiddle(std::int64_t begin, std::int64_t end) const;

    TimeScale m_scale;
    int m_column;
    std::int64_t m_left; ///< the moment one column in front
    bool m_hasLeft;      ///< whether that moment is one
    double m_factor, m_roundingUp;
};

} // namespace Tsb
