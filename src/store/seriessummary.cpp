#include "store/seriessummary.h"

#include <utility>

SeriesSummary::SeriesSummary(SpectMath::SpectrumInfoPointer info)
    : m_info(std::move(info)), m_totalWeights(m_info->totalWeights(SpectMath::ConcentrationType::number))
{
}

bool SeriesSummary::counts(const SpectMath::Spectrum *spectrum) const
{
    return spectrum && spectrum->status == 0 && spectrum->concentrations.size() == m_totalWeights.size();
}

void SeriesSummary::give(SpectrumRecord &entry, const std::shared_ptr<SpectMath::Spectrum> &spectrum)
{
    leave(entry);
    entry.spectrum = spectrum;
    entry.totalDecades = SpectMath::decadesOf(SpectMath::concentrationOf(*spectrum, m_totalWeights));
    if (counts(spectrum.get()))
        m_histogram.add(spectrum->concentrations.data().begin(), spectrum->concentrations.size());
}

void SeriesSummary::leave(const SpectrumRecord &entry)
{
    if (counts(entry.spectrum.get()))
        m_histogram.remove(entry.spectrum->concentrations.data().begin(), entry.spectrum->concentrations.size());
}
