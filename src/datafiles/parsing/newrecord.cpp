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

void widenRecord(Record &record, std::size_t electrometers, std::size_t variables)
{
    growWithNaN(record.voltages, electrometers);
    growWithNaN(record.variables, variables);
    growWithNaN(record.currents, electrometers);
    growWithNaN(record.currentVariances, electrometers);
    growWithNaN(record.rawCurrents, electrometers);
}

std::shared_ptr<SpectMath::Spectrum> makeDiagonalSpectrum(std::size_t points)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->status = 0;
    spectrum->concentrations.resize(points, false);
    spectrum->covariances.resize(points, points, 0, 0, false);
    return spectrum;
}
