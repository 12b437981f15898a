#include "dataexport/spectrumfieldsource.h"

#include "dataexport/delimitedline.h"
#include "dataexport/recordspectrum.h"
#include "util/textescape.h"

#include <cmath>

namespace DataExport {

using SpectMath::DistributionType;

double densityFactor(const SpectMath::SpectrumInfo &info, double radius, DistributionScale axis)
{
    const bool fromMobility = info.scale == DistributionScale::mobility;
    const bool toMobility = axis == DistributionScale::mobility;
    if (fromMobility == toMobility)
        return 1.0; // radius and diameter have the same decades
    const double inModelUnit = radius * info.sizeUnit.factorTo(info.model.sizeUnit);
    const double slope = std::fabs(SpectMath::mobilitySlope(info.model, inModelUnit)) * info.model.mobilityScale;
    return fromMobility ? slope : 1.0 / slope;
}

SpectrumFieldSource::SpectrumFieldSource(const SpectrumField &field) : m_field(field) {}

void SpectrumFieldSource::addTitles(const QString &label, const SpectMath::SpectrumInfo &info,
                                    const std::vector<double> &grid)
{
    const bool isDensity = m_field.distribution == DistributionType::density;
    const QString pattern =
        isDensity ? QStringLiteral("%1 %2 density%7 at %3 %5 (%6)") : QStringLiteral("%1 %2%7 %3 - %4 %5 (%6)");
    for (std::size_t i = 0; i < (isDensity ? grid.size() : grid.size() - 1); ++i) {
        QStringList values{label,
                           m_field.quantity.text(),
                           QString::number(grid[i]),
                           isDensity ? QString() : QString::number(grid[i + 1]),
                           limitUnit(m_field.scale).name,
                           m_field.quantity.unitText(info),
                           QString()};
        m_titles << fillMarkers(pattern, values);
        values.last() = QStringLiteral(" stddev");
        if (m_field.uncertainties)
            m_titles << fillMarkers(pattern, values);
    }
}

std::vector<double> SpectrumFieldSource::factors(const SpectMath::SpectrumInfo &info, std::size_t count) const
{
    std::vector<double> factors(count, m_field.quantity.factor(info));
    if (m_field.distribution == DistributionType::density) {
        for (std::size_t i = 0; i < count; ++i)
            factors[i] *= densityFactor(info, info.radii[i], m_field.scale);
    }
    return factors;
}

bool SpectrumFieldSource::addSpectrum(const SpectMath::SpectrumInfoPointer &info, const QString &label,
                                      QStringList *errors)
{
    const std::vector<double> grid = gridIn(*info, m_field.scale);
    const std::size_t points = info->nativePoints().size();
    if (grid.size() != points || info->radii.size() != points || points == 0) {
        errors->append(QStringLiteral("\"%1\" has no points in %2.").arg(label, limitUnit(m_field.scale).name));
        return true;
    }
    const std::size_t values = m_field.distribution == DistributionType::density ? points : points - 1;
    if (std::size_t(m_titles.size()) + (m_field.uncertainties ? 2 : 1) * values > mostColumns)
        return false;
    addTitles(label, *info, grid);
    m_columns.push_back({info, factors(*info, values)});
    return true;
}

void SpectrumFieldSource::values(const Record &record, DelimitedLine &line) const
{
    for (const Columns &columns : m_columns) {
        const std::size_t count = columns.factors.size();
        RealVector values;
        RealVector deviations;
        if (const SpectMath::Spectrum *const spectrum = usableSpectrum(record, columns.info))
            spectrum->getDistribution(m_field.distribution, m_field.quantity.type, values, deviations);
        if (values.size() != count || deviations.size() != count) {
            line.addEmptyFields((m_field.uncertainties ? 2 : 1) * count);
            continue;
        }
        for (std::size_t i = 0; i < count; ++i) {
            line.addNumber(values[i] * columns.factors[i]);
            if (m_field.uncertainties)
                line.addNumber(deviations[i] * columns.factors[i]);
        }
    }
}

} // namespace DataExport
