#pragma once

#include "spectra/unit.h"

namespace SpectMath {

/// The constants that convert between electrical mobility and particle size: the Stokes-Millikan relation with the
/// Cunningham slip correction 1 + (λ/R)(A + B exp(-C R/λ)). Air conditions are fixed, not those of the measurement.
struct MobilityModel {
    MobilityModel();
    /// Scales of 1.0 and the given units.
    MobilityModel(double a, double b, double c, double freePath, double constant, const Unit &size,
                  const Unit &mobility);

    double slipA = 1.05;
    double slipB = 0.558;
    double slipC = 0.999;
    double meanFreePath = 66.5;        ///< nm
    double mobilityConstant = 0.00472; ///< cm^2/V/s times nm
    double lengthScale = 1e9;          ///< model length unit per sizeUnit
    double mobilityScale = 10000;      ///< model mobility unit per mobilityUnit
    Unit sizeUnit;                     ///< metre
    Unit mobilityUnit;                 ///< m^2/s/V
};

/// Mobility in model.mobilityUnit of a particle of radius r in model.sizeUnit, with the charge factor q.
double radiusToMobility(const MobilityModel &model, double r, double q = 1.0);
/// Radius in model.sizeUnit of mobility z in model.mobilityUnit: a damped fixed point iteration that stops at 0.1 %.
double mobilityToRadius(const MobilityModel &model, double z, double q = 1.0);
/// d ln Z / d ln R at radius r, divided by mobilityScale.
double mobilitySlope(const MobilityModel &model, double r);

} // namespace SpectMath
