#pragma once

#include "records/record.h"
#include "records/recordflag.h"
#include "records/recordmetadata.h"
#include "spectra/spectrum.h"

#include <algorithm>
#include <cmath>
#include <vector>

// The parts of a made-up instrument: its metadata, its spectra and their descriptions, its results.

/// Modes, electrometers and variables of those names, the variables' values in the same order.
inline Spectrometer::RecordMetadataPointer testMetadata(const QStringList &modes, const QStringList &electrometers = {},
                                                        const QStringList &variables = {})
{
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    for (const QString &name : modes)
        metadata->opmodes.append(Opmode(metadata->opmodes.size(), name));
    metadata->electrometerNames = electrometers.toVector();
    metadata->totalElectrometers = electrometers.size();
    for (const QString &name : variables) {
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        variable->name = variable->humanname = name;
        variable->index = variable->valueIndex = metadata->variableCount++;
        metadata->variables.append(variable);
    }
    return metadata;
}

/// So many points, each `ratio` times the one before.
inline std::vector<double> testGrid(int points, double first = 0.5, double ratio = 1.5)
{
    std::vector<double> grid;
    for (int i = 0; i < points; ++i)
        grid.push_back(first * std::pow(ratio, i));
    return grid;
}

/// A finished description, whose name tells mode and group and whose id is "id-" and that name.
inline SpectMath::SpectrumInfoPointer
testInfo(const QString &name, const std::vector<double> &grid,
         SpectMath::DistributionScale scale = SpectMath::DistributionScale::radius, const QString &inverter = {})
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = name;
    info->inverterName = inverter;
    info->hash = "id-" + name;
    info->scale = scale;
    RealVector &points = scale == SpectMath::DistributionScale::mobility ? info->mobilities : info->radii;
    points.resize(grid.size());
    std::copy(grid.begin(), grid.end(), points.begin());
    info->finish();
    return info;
}

/// A description that has nothing but its names.
inline SpectMath::SpectrumInfoPointer namedSpectrum(const QString &name, const QString &hash,
                                                    const QString &inverter = {}, const QString &comment = {})
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = name;
    info->hash = hash;
    info->inverterName = inverter;
    info->comment = comment;
    return info;
}

/// A spectrum of equal values.
inline std::shared_ptr<SpectMath::Spectrum> testSpectrum(const SpectMath::SpectrumInfoPointer &info, double value = 0,
                                                         int status = 0)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->info = info;
    spectrum->concentrations = RealVector(info->nativePoints().size(), value);
    spectrum->status = status;
    return spectrum;
}

/// What an inversion of the record came to.
inline SpectMath::SpectrumRecordPointer resultFor(const Spectrometer::RecordHead &head,
                                                  SpectMath::SpectrumPointerList spectra, bool provisional = false)
{
    auto result = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*result) = head;
    result->spectra = std::move(spectra);
    result->provisional = provisional;
    return result;
}

inline std::shared_ptr<Spectrometer::RecordFlag> testFlag(const QString &message, int type,
                                                          const QVariantMap &properties = {})
{
    auto flag = std::make_shared<Spectrometer::RecordFlag>();
    flag->message = message;
    flag->type = type;
    flag->properties = properties;
    return flag;
}
