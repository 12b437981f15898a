#pragma once

#include "batch/options.h"
#include "store/datastore.h"
#include "util/recordtime.h"

#include <cstdint>

namespace Batch {

/// From `begin` up to but without `end`.
struct TimeSpan {
    RecordTime begin;
    RecordTime end;
    std::int64_t utcOffset; ///< of local times in it, seconds east of Greenwich
};

/// The span that the words ask for, local by the offset of the first record that it shows; an open end is that of the
/// records. A day that ends it counts whole. The store isn't empty.
TimeSpan spanToShow(const RenderOptions &options, const Datastore &store);
/// Whether something of a record lies in the span.
bool hasRecordsIn(const TimeSpan &span, const Datastore &store);
/// The span that was asked for as a local text for people, such as "from 2019-05-14 12:00:00 on".
QString textOf(const TimeSpan &span, const RenderOptions &options);

} // namespace Batch
