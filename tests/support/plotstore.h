#pragma once

#include "store/datastore.h"
#include "support/instrument.h"

/// Where the small stores of tests of plots begin.
const RecordTime testStart = recordTimeFromTicks(18'000 * ticksPerDay);

/// A record between two seconds from there on.
inline Spectrometer::FullRecordPointer testRecord(double beginSecond, double endSecond, int opmode)
{
    auto record = std::make_shared<Spectrometer::FullRecord>();
    record->beginTime = testStart + Ticks(std::int64_t(beginSecond * 1e7));
    record->endTime = testStart + Ticks(std::int64_t(endSecond * 1e7));
    record->opmode = opmode;
    return record;
}

/// Adds a record with one spectrum to a store, as a finished inversion does.
inline void addSpectrumRecord(Datastore &store, double begin, double end,
                              const std::shared_ptr<SpectMath::Spectrum> &spectrum, int opmode = 0)
{
    const auto full = testRecord(begin, end, opmode);
    store.addFullRecord(full);
    store.addSpectra(resultFor(*full, {spectrum}));
}
