#pragma once

#include "records/record.h"
#include "spectra/spectrum.h"

/// The times of one row.
struct RowTimes {
    RecordTime begin{};
    RecordTime end{};
    std::int64_t beginUtcOffset = 0;
    std::int64_t endUtcOffset = 0;
};

/// A new record of those times, with no mode and no values.
std::shared_ptr<Record> makeRecord(const RowTimes &times);
/// Grows the record's vectors, with NaN in new slots. Never shrinks them.
void widenRecord(Record &record, std::size_t electrometers, std::size_t variables);

/// A spectrum that was read well, with room for the values of that many points, whose covariances are a diagonal, and
/// without a description.
std::shared_ptr<SpectMath::Spectrum> makeDiagonalSpectrum(std::size_t points);
