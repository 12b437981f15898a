#pragma once

#include "util/numeric.h"
#include "util/recordtime.h"

#include <QBitArray>

#include <memory>

namespace Spectrometer {

/// One raw sample, before averaging.
struct RawRecord {
    RecordTime instrumentTime{};
    RecordTime computerTime{};
    std::int32_t opmode = -1;
    RealVector electrometers;
    QBitArray valid;      ///< one bit per electrometer
    RealVector variables; ///< diagnostic values
};

using RawRecordPointer = std::shared_ptr<RawRecord>;

} // namespace Spectrometer
