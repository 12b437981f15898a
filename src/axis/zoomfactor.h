#pragma once

#include <cmath>

/// Factors on the extent of a pixel by which the gestures zoom; below 1 they show less.
namespace Tsb {

/// Steps are those of the keys; a positive number of them zooms in.
inline double zoomOfSteps(double steps)
{
    return std::pow(0.9, steps);
}

/// A turn of the wheel, given in eighths of a degree as events tell it: 15 degrees are a step.
inline double zoomOfWheel(int angleDelta)
{
    return zoomOfSteps(angleDelta * 0.125 / 15);
}

/// A drag across the direction of an axis.
inline double zoomOfDrag(int pixels)
{
    return std::pow(0.99, pixels);
}

} // namespace Tsb
