#pragma once

#include "spectra/spectruminfo.h"

#include <QString>

namespace DataExport {

/// A concentration of one of the types, or a mass concentration: the volume times a density.
struct Quantity {
    SpectMath::ConcentrationType type = SpectMath::ConcentrationType::number;
    bool isMass = false;       ///< the type is volume then
    double density = 1.0;      ///< g/cm^3, of a mass
    bool inMicrograms = false; ///< a mass in µg/m^3, else in mg/cm^3

    /// The word for it in titles.
    QString text() const;
    /// The unit of values in titles, for spectra of that description.
    QString unitText(const SpectMath::SpectrumInfo &info) const;
    /// Values are multiplied by this.
    double factor(const SpectMath::SpectrumInfo &info) const;
};

} // namespace DataExport
