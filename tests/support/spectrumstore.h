#pragma once

#include "gui/common/uiinfo.h"
#include "support/plotstore.h"

/// Descriptions and spectra for tests of plots that show them.
inline SpectMath::SpectrumInfoPointer
testInfo(const char *name, std::vector<double> grid,
         SpectMath::DistributionScale scale = SpectMath::DistributionScale::radius, const char *inverter = "")
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = QString::fromUtf8(name);
    info->inverterName = QString::fromUtf8(inverter);
    info->hash = QStringLiteral("id-") + info->name;
    info->scale = scale;
    RealVector &points = scale == SpectMath::DistributionScale::mobility ? info->mobilities : info->radii;
    points.resize(grid.size());
    std::copy(grid.begin(), grid.end(), points.begin());
    return info;
}

inline std::shared_ptr<SpectMath::Spectrum> testSpectrum(const SpectMath::SpectrumInfoPointer &info, double value,
                                                         int status = 0)
{
    auto spectrum = std::make_shared<SpectMath::Spectrum>();
    spectrum->info = info;
    spectrum->concentrations.resize(info->nativePoints().size());
    std::fill(spectrum->concentrations.begin(), spectrum->concentrations.end(), value);
    spectrum->status = status;
    return spectrum;
}

/// Adds a record with one spectrum of equal values to a store, as a finished inversion does.
inline void addSpectrumRecord(Datastore &store, double begin, double end,
                              const std::shared_ptr<SpectMath::Spectrum> &spectrum, int opmode = 0)
{
    const auto full = testRecord(begin, end, opmode);
    store.addFullRecord(full);
    auto spectra = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*spectra) = *full;
    spectra->spectra.push_back(spectrum);
    store.addSpectra(spectra);
}
