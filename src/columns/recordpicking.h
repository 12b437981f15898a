#pragma once

#include "store/datastore.h"

namespace Tsb {

/// Which record a click or key means. All searches start from a bisection, none from the ends of the store.

/// Direction 0: the record nearest to the moment; one that lies in a gap gets the nearer side, the later one in a tie.
/// Below 0: the last record that ends before it. Above 0: the first that doesn't begin before it. Null if there is
/// none.
std::shared_ptr<Record> findRecord(const Datastore &store, RecordTime tick, int direction);
/// The same among the records of one spectrum; spans are those of the series, entry for entry.
std::shared_ptr<Record> findRecord(const Datastore::Series &series, const SpanIndex &spans, RecordTime tick,
                                   int direction);

/// The record of that operating mode nearest to the moment, looked for from `found` in both directions; null if there
/// is none.
std::shared_ptr<Record> nearestOfOpmode(const Datastore &store, const std::shared_ptr<Record> &found, RecordTime tick,
                                        int opmode);

} // namespace Tsb
