#pragma once

#include "dataexport/exportsetup.h"
#include "dataexport/fieldsource.h"
#include "spectra/spectrum.h"

#include <vector>

namespace DataExport {

/// All values of spectra: the density at each point, per decade of the axis of the field, or the fraction between
/// neighbours.
class SpectrumFieldSource : public FieldSource {
public:
    /// Has no more columns than `most`.
    explicit SpectrumFieldSource(const SpectrumField &field, std::size_t most = mostColumns);

    /// Adds the columns of one description, which is called `label` in titles. One that has no points on the axis costs
    /// an error line. False, and the source is of no more use, if there would be too many columns.
    bool addSpectrum(const SpectMath::SpectrumInfoPointer &info, const QString &label, QStringList *errors);

    QStringList titles() const override { return m_titles; }
    void values(const Record &record, DelimitedLine &line) const override;

private:
    struct Columns {
        SpectMath::SpectrumInfoPointer info;
        std::vector<double> factors; ///< of each value, or of each sum of neighbours
    };

    void addTitles(const QString &label, const SpectMath::SpectrumInfo &info, const std::vector<double> &grid);
    std::vector<double> factors(const SpectMath::SpectrumInfo &info, std::size_t count) const;

    SpectrumField m_field;
    std::size_t m_most;
    QStringList m_titles;
    std::vector<Columns> m_columns; ///< of one description each
};

/// By how much a density per decade of the native axis is to be multiplied for one per decade of another: d log x /
/// d log y at the radius, without sign.
double densityFactor(const SpectMath::SpectrumInfo &info, double radius, DistributionScale axis);

} // namespace DataExport
