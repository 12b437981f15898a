#pragma once

#include "store/datastore.h"

#include <algorithm>

namespace Tsb {

/// A number that every record has in one of its vectors.
struct RecordSlot {
    RealVector Record::*vector = nullptr; ///< null: none of them
    int slot = 0;
};
inline bool operator==(const RecordSlot &a, const RecordSlot &b)
{
    return a.vector == b.vector && a.slot == b.slot;
}

/// Calls visit(record) for the records begin .. end - 1, in order. They lie all over memory, so the walk prefetches
/// some records ahead: the number in the slot that is going to be read, or the head of the record without a slot.
template<typename Visit>
void walkRecords(const Datastore::Records &records, std::size_t begin, std::size_t end, const RecordSlot &reads,
                 Visit visit)
{
    constexpr std::size_t recordsAhead = 16, numbersAhead = 8; // twice or half as many make no difference
    auto next = records.begin() + std::ptrdiff_t(begin);
    auto recordAhead = next, numberAhead = next;
    std::size_t recordsAsked = begin, numbersAsked = begin;
    const std::size_t slot = std::size_t(std::max(reads.slot, 0));
    for (std::size_t i = begin; i < end; ++i) {
        // Not in functions of their own: the compiler drops calls of those that only fetch.
        for (; recordsAsked < std::min(end, i + recordsAhead); ++recordsAsked, ++recordAhead) {
            const Record *const ahead = recordAhead->get();
            if (reads.vector)
                __builtin_prefetch(&(ahead->*reads.vector));
            else
                __builtin_prefetch(&ahead->opmode);
        }
        for (; reads.vector && numbersAsked < std::min(end, i + numbersAhead); ++numbersAsked, ++numberAhead) {
            const RealVector &vector = (**numberAhead).*reads.vector;
            if (slot < vector.size())
                __builtin_prefetch(vector.data().begin() + slot);
        }
        visit(**next++);
    }
}

} // namespace Tsb
