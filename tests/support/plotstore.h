#pragma once

#include "store/datastore.h"

/// A small store for tests of plots: records of `seconds` each from `testStart` on, with gaps, modes 0 and 1 in turn.
const RecordTime testStart = recordTimeFromTicks(18'000 * ticksPerDay);

inline Spectrometer::FullRecordPointer testRecord(double beginSecond, double endSecond, int opmode)
{
    auto record = std::make_shared<Spectrometer::FullRecord>();
    record->beginTime = testStart + Ticks(std::int64_t(beginSecond * 1e7));
    record->endTime = testStart + Ticks(std::int64_t(endSecond * 1e7));
    record->opmode = opmode;
    return record;
}
