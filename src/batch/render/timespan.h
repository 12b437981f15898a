#pragma once

#include "batch/options.h"
#include "store/datastore.h"
#include "util/recordtime.h"

namespace Batch {

/// From `begin` up to but without `end`.
struct TimeSpan {
    RecordTime begin;
    RecordTime end;
};

/// The span that the words ask for, local by the first record's offset; an open end is that of the records. A
/// day that ends it counts whole. The store isn't empty.
TimeSpan spanToShow(const RenderOptions &options, const Datastore &store);
/// Whether something of a record lies in the span.
bool hasRecordsIn(const TimeSpan &span, const Datastore &store);
/// The span that was asked for as a local text for people, such as "from 2019-05-14 12:00:00 on".
QString textOf(const TimeSpan &span, const RenderOptions &options, std::int64_t utcOffset);

} // namespace Batch
