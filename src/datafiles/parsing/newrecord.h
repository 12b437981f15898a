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

/// The vectors of a record that come together in files.
struct NumberGroups {
    bool currents = false; ///< with their variances, and raw
    bool voltages = false;
    bool variables = false;

    static constexpr NumberGroups all() { return {true, true, true}; }
    bool any() const { return currents || voltages || variables; }
};

/// The numbers of a record's vectors by themselves. Unlike the vectors, they can be moved.
struct RecordNumbers {
    SlabArray voltages;
    SlabArray variables;
    SlabArray currents;
    SlabArray currentVariances;
    SlabArray rawCurrents;
};

/// A new record of those times, with no mode and no values.
std::shared_ptr<Record> makeRecord(const RowTimes &times);
/// Grows the vectors of those groups, with NaN in new slots. Never shrinks them.
void widenVectors(Record &record, NumberGroups groups, std::size_t electrometers, std::size_t variables);
void widenVectors(RecordNumbers &numbers, NumberGroups groups, std::size_t electrometers, std::size_t variables);
/// Whether the record has numbers of any of the groups, be they NaN.
bool hasNumbers(const Record &record, NumberGroups groups);
/// Hands the numbers of those groups to a record that has none of them.
void moveNumbers(RecordNumbers &from, Record &to, NumberGroups groups);

/// A spectrum that was read well, with room for the values of that many points, whose covariances are a diagonal, and
/// without a description.
std::shared_ptr<SpectMath::Spectrum> makeDiagonalSpectrum(std::size_t points);
