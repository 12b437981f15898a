#pragma once

#include "util/recordtime.h"

#include <QMetaType>

#include <memory>

namespace Spectrometer {

/// Identity of a record: its times, variant and mode.
struct RecordHead {
    RecordTime beginTime{};          ///< UTC
    RecordTime endTime{};            ///< UTC
    std::int64_t beginUtcOffset = 0; ///< seconds east of Greenwich at the begin, as the file gave it
    std::int64_t endUtcOffset = 0;
    std::int32_t dpVariantId = -1;   ///< index in RecordMetadata::dpVariants
    std::int32_t opmode = -1;        ///< index in RecordMetadata::opmodes; -1 is an unknown mode
    bool interim = false;            ///< the head of a record that isn't final
};

/// The same record only if all seven fields are equal.
bool operator==(const RecordHead &a, const RecordHead &b);
inline bool operator!=(const RecordHead &a, const RecordHead &b) { return !(a == b); }

using RecordHeadPointer = std::shared_ptr<RecordHead>;

/// The moment a record ends: without an end, its begin.
constexpr RecordTime effectiveEnd(RecordTime begin, RecordTime end)
{
    return isMissing(end) ? begin : end;
}
inline RecordTime effectiveEnd(const RecordHead &head) { return effectiveEnd(head.beginTime, head.endTime); }

/// Half way from the begin to the effective end, truncated. Held within 64 bits for absurd times.
RecordTime middleOf(RecordTime begin, RecordTime end);

} // namespace Spectrometer

Q_DECLARE_METATYPE(Spectrometer::RecordHeadPointer)
