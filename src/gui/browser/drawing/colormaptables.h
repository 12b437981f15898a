#pragma once

#include <array>

namespace Colormap {

/// One row of a colour table, channels from 0 to 1.
struct Rgb {
    double red, green, blue;
};

/// 256 rows from the map's low end to its high end.
using RgbTable = std::array<Rgb, 256>;

extern const RgbTable viridisTable;
extern const RgbTable plasmaTable;
extern const RgbTable infernoTable;

} // namespace Colormap
