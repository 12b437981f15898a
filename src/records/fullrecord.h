#pragma once

#include "records/recordflag.h"
#include "records/recordhead.h"
#include "util/numeric.h"

#include <vector>

namespace Spectrometer {

/// A head with all measured values. NaN stands for a value that isn't there.
struct FullRecord : RecordHead {
    // These two stand beside the mode in the head: drawing reads all three of very many records for their colours.
    bool provisional = false; ///< the measured values are provisional; never written to day files
    bool regular = true;      ///< drawn from the second pen list of a variable plot when false

    RealVector voltages;         ///< V, one per electrometer
    RealVector variables;        ///< slot = SystemVariable::valueIndex
    RealVector currents;         ///< fA, one per electrometer
    RealVector currentVariances; ///< fA^2
    RealVector rawCurrents;      ///< fA, uncorrected
    std::vector<std::shared_ptr<RecordFlag>> flags; ///< in file order, doubles kept
};

using FullRecordPointer = std::shared_ptr<FullRecord>;

} // namespace Spectrometer

Q_DECLARE_METATYPE(Spectrometer::FullRecordPointer)
