#include "datafiles/parsing/newrecord.h"

namespace {

void growWithNaN(RealVector &vector, std::size_t size)
{
    if (vector.size() < size)
        vector.data().resize(size, noValue);
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

void widenRecord(Record &record, NumberGroups groups, std::size_t electrometers, std::size_t variables)
{
    if (groups.voltages)
        growWithNaN(record.voltages, electrometers);
    if (groups.variables)
        growWithNaN(record.variables, variables);
    if (groups.currents) {
        growWithNaN(record.currents, electrometers);
        growWithNaN(record.currentVariances, electrometers);
        growWithNaN(record.rawCurrents, electrometers);
    }
}

bool hasNumbers(const Record &record, NumberGroups groups)
{
    return (groups.voltages && record.voltages.size() > 0) || (groups.variables && record.variables.size() > 0) ||
           (groups.currents && record.currents.size() > 0);
}

void moveNumbers(Record &from, Record &to, NumberGroups groups)
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
