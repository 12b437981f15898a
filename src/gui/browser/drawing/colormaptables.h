#pragma once

#include "gui/browser/drawing/colormap.h"

#include <array>

namespace Colormap {

/// 256 rows from the map's low end to its high end.
using RgbTable = std::array<Rgb, 256>;

extern const RgbTable viridisTable;
extern const RgbTable plasmaTable;
extern const RgbTable infernoTable;

} // namespace Colormap
