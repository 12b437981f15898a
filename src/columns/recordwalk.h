#pragma once

#include "store/datastore.h"
#include "util/numeric.h"

#include <algorithm>

namespace Tsb {

/// Calls visit(record) for the records begin .. end - 1, in order. They lie all over memory, so the walk prefetches
/// `part` of the records some places ahead: the member that is going to be read.
template<typename Owner, typename Part, typename Visit>
void walkRecords(const Datastore::Records &records, std::size_t begin, std::size_t end, Part Owner::*part, Visit visit)
{
    constexpr std::size_t recordsAhead = 16; // twice or half as many make no difference
    auto next = records.begin() + std::ptrdiff_t(begin);
    auto ahead = next;
    std::size_t asked = begin;
    for (std::size_t i = begin; i < end; ++i) {
        for (; asked < std::min(end, i + recordsAhead); ++asked, ++ahead)
            __builtin_prefetch(&(ahead->get()->*part));
        visit(**next++);
    }
}

/// A number that every record has in one of its vectors.
struct RecordSlot {
    RealVector Record::*vector = nullptr; ///< null: none of them
    int slot = 0;
};
inline bool operator==(const RecordSlot &a, const RecordSlot &b)
{
    return a.vector == b.vector && a.slot == b.slot;
}

/// The numbers of one of a record's vectors, valid as long as that is unchanged.
struct RecordNumbers {
    const double *begin = nullptr;
    std::size_t size = 0;

    static RecordNumbers of(const RealVector &vector) { return {vector.data().begin(), vector.size()}; }
    /// The number in a slot; NaN where there is none.
    double at(int slot) const { return slot >= 0 && std::size_t(slot) < size ? begin[slot] : noValue; }
};

} // namespace Tsb
