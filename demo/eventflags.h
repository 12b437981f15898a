#pragma once

#include "records/recordflag.h"

#include <memory>

namespace Demo {

/// The flags that records of the campaign carry, one object each.
struct EventFlags {
    using Pointer = std::shared_ptr<Spectrometer::RecordFlag>;

    static const EventFlags &instance();

    Pointer inletCleaned;
    Pointer zeroDrift;
    Pointer highHumidity;
    Pointer weakCharger;
    Pointer chargerFailure;
};

} // namespace Demo
