#pragma once

#include "gui/common/flagcounts.h"

/// The HTML texts of the status dock.
namespace StatusText {

constexpr int mostRows = 1000; ///< of more flags the rest is counted only

struct Texts {
    QString table;
    QString summary; ///< how many flags of each kind the table has, or "ok"
};

/// All flags, the most frequent first; those of equal count by message.
Texts byCount(const FlagCounts &counts);
/// The flags of the last day, the latest first, with their ages. Those older than ten minutes are dimmed and not in the
/// summary.
Texts byTime(const FlagCounts &counts, RecordTime now);

/// The time since a flag was seen, as in "2:05 hours ago".
QString age(Ticks age);

} // namespace StatusText
