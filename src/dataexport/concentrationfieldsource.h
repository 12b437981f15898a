#pragma once

#include "dataexport/exportsetup.h"
#include "dataexport/fieldsource.h"
#include "spectra/spectrum.h"

#include <vector>

namespace DataExport {

/// Total concentrations and fractions of spectra, each value followed by its uncertainty. Uncertainties of a spectrum's
/// points are taken as fully dependent: they add up linearly, with the same weights as the values.
class ConcentrationFieldSource : public FieldSource {
public:
    /// Has no more columns than `most`.
    explicit ConcentrationFieldSource(const ConcentrationField &field, std::size_t most = mostColumns);

    /// Adds the columns of one description, which is called `label` in titles. A grid that has no decades costs the
    /// decade columns and an error line. False, and the source is of no more use, if there would be too many columns.
    bool addSpectrum(const SpectMath::SpectrumInfoPointer &info, const QString &label, QStringList *errors);

    QStringList titles() const override { return m_titles; }
    void values(const Record &record, DelimitedLine &line) const override;

private:
    /// The weights of one value, without the zeros at both ends.
    struct Weights {
        std::size_t first = 0;
        std::vector<double> values;
    };
    struct Gaps;
    struct Columns {
        SpectMath::SpectrumInfoPointer info;
        double factor;
        std::vector<Weights> weights;
    };

    static Weights trimmed(const RealVector &weights);
    static double dotProduct(const Weights &weights, const double *points, const Gaps &gaps);
    void addTotal(const QString &label, Columns &columns);
    void addFraction(const QString &label, const Limits &limits, DistributionScale scale, Columns &columns);

    ConcentrationField m_field;
    std::size_t m_most;
    QStringList m_titles;
    std::vector<Columns> m_columns; ///< of one description each
};

} // namespace DataExport
