#include "dataexport/recordspectrum.h"

#include <cmath>

namespace DataExport {

namespace {

const SpectMath::Spectrum *spectrumOf(const Record &record, const SpectMath::SpectrumInfoPointer &info)
{
    for (const auto &spectrum : record.spectra)
        if (spectrum && spectrum->info == info)
            return spectrum.get();
    for (const auto &spectrum : record.spectra)
        if (spectrum && spectrum->info && *spectrum->info == *info)
            return spectrum.get();
    return nullptr;
}

} // namespace

const SpectMath::Spectrum *usableSpectrum(const Record &record, const SpectMath::SpectrumInfoPointer &info)
{
    const SpectMath::Spectrum *const spectrum = spectrumOf(record, info);
    if (!spectrum || spectrum->status != 0 || spectrum->concentrations.size() != info->nativePoints().size())
        return nullptr;
    return spectrum;
}

void standardDeviations(const SpectMath::Spectrum &spectrum, std::vector<double> *deviations)
{
    const std::size_t points = spectrum.concentrations.size();
    deviations->assign(points, noValue);
    const BandMatrix &covariances = spectrum.covariances;
    if (covariances.size1() != points || covariances.size2() != points)
        return;
    for (std::size_t i = 0; i < points; ++i)
        (*deviations)[i] = std::sqrt(covariances(i, i));
}

} // namespace DataExport
