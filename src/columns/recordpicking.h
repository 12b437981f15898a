#pragma once

#include "store/datastore.h"

namespace Tsb {

/// The record that a click or a key means. Every search begins with a bisection, none at the ends of the store.

/// Direction 0 finds the record nearest to the moment: of the two beside a gap the nearer one, the later in a tie. A
/// direction below 0 finds the last record that ends before the moment, one above 0 the first that doesn't begin before
/// it. Null if there is none.
std::shared_ptr<Record> findRecord(const Datastore &store, RecordTime tick, int direction);
/// The same among the records of one spectrum. The spans are those of the series, entry for entry.
std::shared_ptr<Record> findRecord(const Datastore::Series &series, const SpanIndex &spans, RecordTime tick,
                                   int direction);

/// The record of that operating mode nearest to the moment. The search goes from `found` in both directions. Null if
/// there is none.
std::shared_ptr<Record> nearestOfOpmode(const Datastore &store, const std::shared_ptr<Record> &found, RecordTime tick,
                                        int opmode);

} // namespace Tsb
