#pragma once

#include "spectra/spectruminfo.h"

#include <memory>

/// A description that has nothing but its names.
inline SpectMath::SpectrumInfoPointer namedSpectrum(const QString &name, const QString &hash,
                                                    const QString &inverter = {}, const QString &comment = {})
{
    auto made = std::make_shared<SpectMath::SpectrumInfo>();
    made->name = name;
    made->hash = hash;
    made->inverterName = inverter;
    made->comment = comment;
    return made;
}
