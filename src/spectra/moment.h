#pragma once

namespace SpectMath {

enum class ConcentrationType { number, radius, diameter, surface, volume };

/// The value times the moment of a concentration type at radius r, factor by factor from left to right, so that results
/// agree to the last bit with files that were written this way.
inline double timesMoment(double value, double r, ConcentrationType type)
{
    constexpr double pi = 3.14159265358979323846;
    switch (type) {
    case ConcentrationType::number:
        break;
    case ConcentrationType::radius:
        return value * r;
    case ConcentrationType::diameter:
        return value * r * 2.0;
    case ConcentrationType::surface:
        return value * r * r * pi * 4.0;
    case ConcentrationType::volume:
        return value * r * r * r * pi * 4.0 / 3.0;
    }
    return value;
}

} // namespace SpectMath
