#include "store/seriessummary.h"

#include <utility>

using SpectMath::Spectrum;

SeriesSummary::SeriesSummary(SpectMath::SpectrumInfoPointer info)
    : m_info(std::move(info)), m_totalWeights(m_info->totalWeights(SpectMath::ConcentrationType::number))
{
}

bool SeriesSummary::counts(const Spectrum &spectrum) const
{
    return spectrum.status == 0 && spectrum.concentrations.size() == m_totalWeights.size();
}

void SeriesSummary::count(const Spectrum &spectrum)
{
    if (counts(spectrum))
        m_histogram.add(spectrum.concentrations.data().begin(), spectrum.concentrations.size());
}

void SeriesSummary::discount(const Spectrum &spectrum)
{
    if (counts(spectrum))
        m_histogram.remove(spectrum.concentrations.data().begin(), spectrum.concentrations.size());
}

double SeriesSummary::totalDecadesOf(const Spectrum &spectrum) const
{
    return SpectMath::decadesOf(SpectMath::concentrationOf(spectrum, m_totalWeights));
}

void SeriesSummary::insert(std::size_t place, const Spectrum &spectrum)
{
    count(spectrum);
    m_totalDecades.insert(place, totalDecadesOf(spectrum));
}

void SeriesSummary::replace(std::size_t place, const Spectrum &former, const Spectrum &spectrum)
{
    discount(former);
    count(spectrum);
    m_totalDecades.set(place, totalDecadesOf(spectrum));
}

void SeriesSummary::removeFirst(const Spectrum &spectrum)
{
    discount(spectrum);
    m_totalDecades.removeFirst(1);
}

void SeriesSummary::Merge::insert(const Spectrum &spectrum)
{
    m_summary.count(spectrum);
    m_totals.insert(m_totals.size(), m_summary.totalDecadesOf(spectrum));
}

void SeriesSummary::Merge::replaceLast(const Spectrum &former, const Spectrum &spectrum)
{
    m_summary.discount(former);
    m_summary.count(spectrum);
    m_totals.set(m_totals.size() - 1, m_summary.totalDecadesOf(spectrum));
}

void SeriesSummary::Merge::finish()
{
    while (m_kept < m_summary.m_totalDecades.size())
        keep();
    m_summary.m_totalDecades = std::move(m_totals);
}
