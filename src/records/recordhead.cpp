#include "records/recordhead.h"

namespace Spectrometer {

bool operator==(const RecordHead &a, const RecordHead &b)
{
    return a.beginTime == b.beginTime && a.endTime == b.endTime && a.beginUtcOffset == b.beginUtcOffset
        && a.endUtcOffset == b.endUtcOffset && a.dpVariantId == b.dpVariantId && a.opmode == b.opmode
        && a.interim == b.interim;
}

RecordTime middleOf(RecordTime begin, RecordTime end)
{
    const std::int64_t span = saturatedSubtract(ticksOf(effectiveEnd(begin, end)), ticksOf(begin));
    return recordTimeFromTicks(saturatedAdd(ticksOf(begin), span / 2));
}

} // namespace Spectrometer
