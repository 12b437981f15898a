#pragma once

#include "spectra/decadehistogram.h"
#include "store/spectrumrecord.h"

/// What colour limits and plots of total concentrations ask of all values of a series. Kept as spectra come and go,
/// when their values are at hand: to gather them later from all over memory takes longer than to draw them. A spectrum
/// that was given to an entry changes no more.
class SeriesSummary {
public:
    explicit SeriesSummary(SpectMath::SpectrumInfoPointer info);

    /// Gives the entry a spectrum, in place of the one it may have.
    void give(SpectrumRecord &entry, const std::shared_ptr<SpectMath::Spectrum> &spectrum);
    /// The entry is about to go.
    void leave(const SpectrumRecord &entry);

    /// Of the concentrations of all spectra that didn't fail and have the description's size.
    const SpectMath::DecadeHistogram &histogram() const { return m_histogram; }

private:
    bool counts(const SpectMath::Spectrum *spectrum) const;

    SpectMath::SpectrumInfoPointer m_info; ///< held, so that no other description comes to stand at its address
    RealVector m_totalWeights;
    SpectMath::DecadeHistogram m_histogram;
};
