#pragma once

#include "store/datastore.h"

#include <algorithm>

namespace Tsb {

/// Calls visit(entry) for the entries begin .. end - 1 of a series, in order. Their spectra lie all over memory and are
/// reached in steps that each wait for the one before, so the walk prefetches each step some entries ahead. It is meant
/// for visitors that read all values of most entries.
template<typename Visit>
void walkSpectra(const Datastore::Series &series, std::size_t begin, std::size_t end, Visit visit)
{
    constexpr std::size_t spectraAhead = 16, valuesAhead = 8; // entries; twice or half as many make no difference
    constexpr std::size_t valuesPerLine = 64 / sizeof(double);
    auto entry = series.begin() + std::ptrdiff_t(begin);
    auto spectrumAhead = entry, valueAhead = entry;
    std::size_t spectraAsked = begin, valuesAsked = begin;
    for (std::size_t i = begin; i < end; ++i) {
        // Not in functions of their own: the compiler drops calls of those that only fetch.
        for (; spectraAsked < std::min(end, i + spectraAhead); ++spectraAsked, ++spectrumAhead) {
            if (const SpectMath::Spectrum *spectrum = spectrumAhead->spectrum.get()) {
                __builtin_prefetch(&spectrum->concentrations);
                __builtin_prefetch(&spectrum->status);
            }
        }
        for (; valuesAsked < std::min(end, i + valuesAhead); ++valuesAsked, ++valueAhead) {
            const SpectMath::Spectrum *spectrum = valueAhead->spectrum.get();
            const std::size_t count = spectrum ? spectrum->concentrations.size() : 0;
            const double *values = count > 0 ? spectrum->concentrations.data().begin() : nullptr;
            for (std::size_t k = 0; k < count; k += valuesPerLine)
                __builtin_prefetch(values + k);
            if (count > 0)
                __builtin_prefetch(values + count - 1);
        }
        visit(*entry++);
    }
}

} // namespace Tsb
