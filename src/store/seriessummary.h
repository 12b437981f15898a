#pragma once

#include "spectra/decadehistogram.h"
#include "spectra/spectrum.h"
#include "util/valuequeue.h"

/// Sums over all values of a series, for colour limits and plots of total concentrations. Kept as spectra come and go,
/// when their values are at hand: to gather them later from all over memory takes longer than to draw them. A spectrum
/// that was given to an entry changes no more.
class SeriesSummary {
public:
    explicit SeriesSummary(SpectMath::SpectrumInfoPointer info);

    /// A new entry at that place has this spectrum.
    void insert(std::size_t place, const SpectMath::Spectrum &spectrum);
    /// The entry at that place has this spectrum now instead of the former one.
    void replace(std::size_t place, const SpectMath::Spectrum &former, const SpectMath::Spectrum &spectrum);
    /// The first entry, which had this spectrum, has gone.
    void removeFirst(const SpectMath::Spectrum &spectrum);

    /// Makes room for that many entries: inserting them, or appending their totals, doesn't fail then.
    void reserve(std::size_t size) { m_totalDecades.reserve(size); }

    // For a merge, which puts many entries in their places at once.
    /// Counts an entry's spectrum in, and tells its total.
    double count(const SpectMath::Spectrum &spectrum);
    void discount(const SpectMath::Spectrum &spectrum);
    void appendTotal(double totalDecades) { m_totalDecades.insert(m_totalDecades.size(), totalDecades); }
    /// Forgets the totals of the entries from `size` on.
    void truncateTotals(std::size_t size) { m_totalDecades.truncate(size); }

    /// Of the concentrations of all spectra that didn't fail and have the description's size.
    const SpectMath::DecadeHistogram &histogram() const { return m_histogram; }
    /// The number concentrations over the whole axis, entry for entry, by decadesOf(); NaN for a failed spectrum or one
    /// of another size.
    const double *totalDecades() const { return m_totalDecades.data(); }

private:
    bool counts(const SpectMath::Spectrum &spectrum) const;

    SpectMath::SpectrumInfoPointer m_info; ///< held, so that no other description comes to stand at its address
    RealVector m_totalWeights;
    SpectMath::DecadeHistogram m_histogram;
    ValueQueue<double> m_totalDecades;
};
