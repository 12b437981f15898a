#include "dataexport/concentrationfieldsource.h"

#include "dataexport/delimitedline.h"
#include "dataexport/recordspectrum.h"
#include "util/textescape.h"

#include <algorithm>
#include <cmath>

namespace DataExport {

/// The first and the last value that isn't finite.
struct ConcentrationFieldSource::Gaps {
    Gaps(const double *values, std::size_t count) : first(0), last(0)
    {
        while (first < count && std::isfinite(values[first]))
            ++first;
        for (std::size_t i = first; i < count; ++i)
            last = std::isfinite(values[i]) ? last : i;
        any = first < count;
    }

    std::size_t first;
    std::size_t last;
    bool any;
};

ConcentrationFieldSource::ConcentrationFieldSource(const ConcentrationField &field, std::size_t most)
    : m_field(field), m_most(most)
{
}

ConcentrationFieldSource::Weights ConcentrationFieldSource::trimmed(const RealVector &weights)
{
    const auto isSet = [](double weight) { return weight != 0; };
    const auto first = std::find_if(weights.begin(), weights.end(), isSet);
    auto end = weights.end();
    while (end != first && !isSet(*(end - 1)))
        --end;
    return {std::size_t(first - weights.begin()), std::vector<double>(first, end)};
}

void ConcentrationFieldSource::addTotal(const QString &label, Columns &columns)
{
    const QStringList values{label, m_field.quantity.text(), m_field.quantity.unitText(*columns.info)};
    m_titles << fillMarkers(QStringLiteral("%1 total %2 (%3)"), values)
             << fillMarkers(QStringLiteral("%1 total %2 stddev (%3)"), values);
    columns.weights.push_back(trimmed(columns.info->totalWeights(m_field.quantity.type)));
}

void ConcentrationFieldSource::addFraction(const QString &label, const Limits &limits, DistributionScale scale,
                                           Columns &columns)
{
    const QStringList values{label,
                             m_field.quantity.text(),
                             QString::number(limits.first),
                             QString::number(limits.second),
                             limitUnit(scale).name,
                             m_field.quantity.unitText(*columns.info)};
    m_titles << fillMarkers(QStringLiteral("%1 %2 %3 - %4 %5 (%6)"), values)
             << fillMarkers(QStringLiteral("%1 %2 stddev %3 - %4 %5 (%6)"), values);
    columns.weights.push_back(trimmed(weightsBetween(*columns.info, limits, scale, m_field.quantity.type)));
}

/// Leaves out the weights of zero at both ends. A zero times a value that isn't finite is NaN, and so is a sum with it.
double ConcentrationFieldSource::dotProduct(const Weights &weights, const double *points, const Gaps &gaps)
{
    if (gaps.any && (gaps.first < weights.first || gaps.last >= weights.first + weights.values.size()))
        return noValue;
    double sum = 0;
    for (std::size_t i = 0; i < weights.values.size(); ++i)
        sum += weights.values[i] * points[weights.first + i];
    return sum;
}

bool ConcentrationFieldSource::addSpectrum(const SpectMath::SpectrumInfoPointer &info, const QString &label,
                                           QStringList *errors)
{
    std::vector<Limits> pieces;
    if (m_field.decades.isEnabled) {
        const std::vector<double> grid = gridIn(*info, m_field.decades.scale);
        const Limits range = m_field.decades.range(grid);
        if (std::isnan(range.first))
            errors->append(QStringLiteral("The grid of \"%1\" has no decades.").arg(label));
        pieces = m_field.decades.pieces(grid);
    }
    const std::size_t values = (m_field.total ? 1 : 0) + pieces.size() + m_field.customFractions.size();
    if (std::size_t(m_titles.size()) + 2 * values > m_most)
        return false;

    Columns columns{info, m_field.quantity.factor(*info), {}};
    if (m_field.total)
        addTotal(label, columns);
    for (const Limits &piece : pieces)
        addFraction(label, piece, m_field.decades.scale, columns);
    for (const Limits &fraction : m_field.customFractions)
        addFraction(label, fraction, m_field.customScale, columns);
    m_columns.push_back(std::move(columns));
    return true;
}

void ConcentrationFieldSource::values(const Record &record, DelimitedLine &line) const
{
    std::vector<double> deviations;
    for (const Columns &columns : m_columns) {
        const SpectMath::Spectrum *const spectrum = usableSpectrum(record, columns.info);
        if (!spectrum) {
            line.addEmptyFields(2 * columns.weights.size());
            continue;
        }
        const std::size_t points = spectrum->concentrations.size();
        const double *const concentrations = spectrum->concentrations.data().begin();
        standardDeviations(*spectrum, &deviations);
        const Gaps gaps(concentrations, points);
        const Gaps deviationGaps(deviations.data(), points);
        for (const Weights &weights : columns.weights) {
            line.addNumber(dotProduct(weights, concentrations, gaps) * columns.factor);
            line.addNumber(dotProduct(weights, deviations.data(), deviationGaps) * columns.factor);
        }
    }
}

} // namespace DataExport
