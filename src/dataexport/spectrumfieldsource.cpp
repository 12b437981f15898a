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

SpectrumFieldSource::SpectrumFieldSource(const SpectrumField &field, std::size_t most) : m_field(field), m_most(most) {}

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

/// For fractions those of the sum of both neighbours, with the moment at the geometric mean of their radii.
std::vector<double> SpectrumFieldSource::factors(const SpectMath::SpectrumInfo &info, std::size_t count) const
{
    const double unitFactor = m_field.quantity.factor(info);
    const RealVector &points = info.nativePoints();
    std::vector<double> factors(count);
    for (std::size_t i = 0; i < count; ++i) {
        const bool isDensity = m_field.distribution == DistributionType::density;
        const double radius = isDensity ? info.radii[i] : std::sqrt(info.radii[i] * info.radii[i + 1]);
        const double width = isDensity ? densityFactor(info, radius, m_field.scale)
                                       : std::fabs(std::log10(points[i + 1]) - std::log10(points[i])) / 2;
        factors[i] = SpectMath::timesMoment(width, radius, m_field.quantity.type) * unitFactor;
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
    if (std::size_t(m_titles.size()) + (m_field.uncertainties ? 2 : 1) * values > m_most)
        return false;
    addTitles(label, *info, grid);
    m_columns.push_back({info, factors(*info, values)});
    return true;
}

void SpectrumFieldSource::values(const Record &record, DelimitedLine &line) const
{
    std::vector<double> deviations;
    const bool isDensity = m_field.distribution == DistributionType::density;
    for (const Columns &columns : m_columns) {
        const std::size_t count = columns.factors.size();
        const SpectMath::Spectrum *const spectrum = usableSpectrum(record, columns.info);
        if (!spectrum) {
            line.addEmptyFields((m_field.uncertainties ? 2 : 1) * count);
            continue;
        }
        if (m_field.uncertainties)
            standardDeviations(*spectrum, &deviations);
        const auto valueOf = [&](const auto &points, std::size_t i) {
            return columns.factors[i] * (isDensity ? points[i] : points[i] + points[i + 1]);
        };
        for (std::size_t i = 0; i < count; ++i) {
            line.addNumber(valueOf(spectrum->concentrations, i));
            if (m_field.uncertainties)
                line.addNumber(valueOf(deviations, i));
        }
    }
}

} // namespace DataExport
