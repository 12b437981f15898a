#pragma once

#include "spectra/unit.h"
#include "spectra/unitparser.h"

/// Reads a unit of a file's header. Three texts in base form stand for their usual spelling: "1e+06/m^3" for "1/cm^3",
/// "1e-09*m" for "nm" and "0.0001/kg*s^2*A" for "cm^2/s/V". Throws SpectMath::UnitParsingError.
Unit parseHeaderUnit(const QString &text);
