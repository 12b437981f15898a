#include "datafiles/parsing/newrecord.h"

namespace {

void growWithNaN(RealVector &vector, std::size_t size)
{
    if (vector.size() < size)
        vector.data().resize(size, noValue);
}

template<class Vectors>
void widen(Vectors &vectors, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    if (groups.voltages)
        growWithNaN(vectors.voltages, electrometers);
    if (groups.variables)
        growWithNaN(vectors.variables, variables);
    if (groups.currents) {
        growWithNaN(vectors.currents, electrometers);
        growWithNaN(vectors.currentVariances, electrometers);
        growWithNaN(vectors.rawCurrents, electrometers);
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
    widen(record, groups, electrometers, variables);
}

void widenVectors(RecordVectors &vectors, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    widen(vectors, groups, electrometers, variables);
}

bool hasNumbers(const Record &record, NumberGroups groups)
{
    return (groups.voltages && record.voltages.size() > 0) || (groups.variables && record.variables.size() > 0) ||
           (groups.currents && record.currents.size() > 0);
}

void moveNumbers(RecordVectors &from, Record &to, NumberGroups groups)
{
    if (groups.voltages)
        to.voltages.swap(from.voltages);
    if (groups.variables)
        to.variables.swap(from.variables);
    if (groups.currents) {
        to.currents.swap(from.currents);
        to.currentVariances.swap(from.currentVariances);
        to.rawCurrents.swap(from.rawCurrents);
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
