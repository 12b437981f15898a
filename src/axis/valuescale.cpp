#include "axis/valuescale.h"

#include <cmath>

bool ValueScale::isUsable(int height) const
{
    const double bottom = value(0);
    const double top = value(height);
    return std::isfinite(originValue) && std::isfinite(valuePerPixel) && std::isfinite(originPixel) &&
           valuePerPixel != 0 && std::isfinite(bottom) && std::isfinite(top) && bottom != top;
}

bool operator==(const ValueScale &a, const ValueScale &b)
{
    return a.valid == b.valid && Tsb::sameValue(a.originValue, b.originValue) &&
           Tsb::sameValue(a.valuePerPixel, b.valuePerPixel) && Tsb::sameValue(a.originPixel, b.originPixel);
}
