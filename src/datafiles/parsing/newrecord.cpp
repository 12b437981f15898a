#include "datafiles/parsing/newrecord.h"

namespace {

struct Arrays {
    SlabArray &voltages;
    SlabArray &variables;
    SlabArray &currents;
    SlabArray &currentVariances;
    SlabArray &rawCurrents;
};

Arrays arraysOf(Record &record)
{
    return {record.voltages.data(), record.variables.data(), record.currents.data(), record.currentVariances.data(),
            record.rawCurrents.data()};
}

Arrays arraysOf(RecordNumbers &numbers)
{
    return {numbers.voltages, numbers.variables, numbers.currents, numbers.currentVariances, numbers.rawCurrents};
}

void growWithNaN(SlabArray &array, std::size_t size)
{
    if (array.size() < size)
        array.resize(size, noValue);
}

void widen(const Arrays &arrays, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    if (groups.voltages)
        growWithNaN(arrays.voltages, electrometers);
    if (groups.variables)
        growWithNaN(arrays.variables, variables);
    if (groups.currents) {
        growWithNaN(arrays.currents, electrometers);
        growWithNaN(arrays.currentVariances, electrometers);
        growWithNaN(arrays.rawCurrents, electrometers);
    }
}

} // namespace

std::shared_ptr<Record> makeRecord(const RowTimes &times)
{
    auto record = ::makeRecord();
    record->dpVariantId = 0;
    record->beginTime = times.begin;
    record->endTime = times.end;
    record->beginUtcOffset = times.beginUtcOffset;
    record->endUtcOffset = times.endUtcOffset;
    record->midTime = Spectrometer::middleOf(times.begin, times.end);
    return record;
}

void widenVectors(Record &record, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    widen(arraysOf(record), groups, electrometers, variables);
}

void widenVectors(RecordNumbers &numbers, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    widen(arraysOf(numbers), groups, electrometers, variables);
}

bool hasNumbers(const Record &record, NumberGroups groups)
{
    return (groups.voltages && !record.voltages.empty()) || (groups.variables && !record.variables.empty()) ||
           (groups.currents && !record.currents.empty());
}

void moveNumbers(RecordNumbers &from, Record &to, NumberGroups groups)
{
    const Arrays arrays = arraysOf(to);
    if (groups.voltages)
        arrays.voltages.swap(from.voltages);
    if (groups.variables)
        arrays.variables.swap(from.variables);
    if (groups.currents) {
        arrays.currents.swap(from.currents);
        arrays.currentVariances.swap(from.currentVariances);
        arrays.rawCurrents.swap(from.rawCurrents);
    }
}

std::shared_ptr<SpectMath::Spectrum> makeDiagonalSpectrum(std::size_t points)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->status = 0;
    spectrum->concentrations.resize(points, false);
    spectrum->covariances.resize(points, points, 0, 0, false);
    return spectrum;
}
