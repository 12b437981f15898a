#pragma once

#include "store/seriessummary.h"
#include "store/spectrumrecord.h"

#include <deque>
#include <vector>

/// The entry's own gap, and those of its neighbours, which only ever get smaller. A neighbour may be null.
void updateGaps(SpectrumRecord *previous, SpectrumRecord &entry, SpectrumRecord *next);

/// Enters many spectra of one description in ascending order of their records' beginTime, none of them before that
/// place: the same result as entering each in turn, at the cost of one walk from there on. Entered in turn, a record
/// goes before those of the same beginTime that are there. If it is the first of them itself, its spectrum is replaced.
/// Throws std::bad_alloc, and then nothing has changed.
void mergeSpectra(std::deque<SpectrumRecord> &series, SeriesSummary &summary, std::size_t place,
                  const std::vector<SpectrumRecord> &entries);
