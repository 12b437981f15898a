#include "store/seriessummary.h"

#include <utility>

using SpectMath::Spectrum;

SeriesSummary::SeriesSummary(SpectMath::SpectrumInfoPointer info)
    : m_info(std::move(info)), m_totalWeights(m_info->totalWeights(SpectMath::ConcentrationType::number))
{
    SpectMath::DecadeHistogram::binOf(1.0); // makes the table of bins, so that counting never needs memory
}

bool SeriesSummary::counts(const Spectrum &spectrum) const
{
    return spectrum.status == 0 && spectrum.concentrations.size() == m_totalWeights.size();
}

double SeriesSummary::count(const Spectrum &spectrum)
{
    if (counts(spectrum))
        m_histogram.add(spectrum.concentrations.data().begin(), spectrum.concentrations.size());
    return SpectMath::decadesOf(SpectMath::concentrationOf(spectrum, m_totalWeights));
}

void SeriesSummary::discount(const Spectrum &spectrum)
{
    if (counts(spectrum))
        m_histogram.remove(spectrum.concentrations.data().begin(), spectrum.concentrations.size());
}

void SeriesSummary::insert(std::size_t place, const Spectrum &spectrum)
{
    m_totalDecades.insert(place, count(spectrum));
}

void SeriesSummary::replace(std::size_t place, const Spectrum &former, const Spectrum &spectrum)
{
    discount(former);
    m_totalDecades.set(place, count(spectrum));
}

void SeriesSummary::removeFirst(const Spectrum &spectrum)
{
    discount(spectrum);
    m_totalDecades.removeFirst(1);
}
