#pragma once

#include "axis/timescale.h"

#include <QString>

#include <vector>

namespace Tsb {

/// The contents of the time axis as plain values: a function of the scale, the widths and the offset alone.

struct TimeTick {
    int x = 0;         ///< column
    bool drawn = true; ///< false where the ticks would stand too close
    QString label;     ///< empty where the axis shows none
};

/// A run of ticks under one text, such as a day's.
struct TimeGroup {
    int left = 0;
    int right = 0;
    QString text;
};

struct TimeAxis {
    std::vector<TimeTick> ticks;
    std::vector<TimeGroup> groups;
    std::vector<int> boundaries; ///< columns between groups, marked by a stronger tick
};

/// The widths of the widest texts in the font of the axis, in columns.
struct TimeTextWidths {
    int month = 0; ///< as "2021-05"
    int day = 0;   ///< as "31"
};

/// Ticks and groups of the columns 0 .. width. Steps line up with midnight UTC; texts show the time moved by the
/// offset. Times before the epoch get no text. Where a label for each day has no room, fewer days of each month are
/// labelled, so that labels stand a text's width and a half apart, at the end of the shortest month too. Where no month
/// has room for its text, the texts are those of years, and the marks between months stay.
TimeAxis timeAxis(const TimeScale &scale, int width, std::int64_t offsetSeconds, const TimeTextWidths &texts);

/// The two texts at the time cursor.
struct TimeCursorLabels {
    QString upper;
    QString lower;
};
TimeCursorLabels timeCursorLabels(const TimeScale &scale, std::int64_t x, std::int64_t offsetSeconds);

enum class GroupPlacing { Centred, Left, Right, Omitted };
/// The place of a group's text in its cell on an axis `width` columns wide. The text is centred if it fits. A wider one
/// keeps to the inner end where the window cuts the cell off, and is left out where it doesn't.
GroupPlacing groupPlacing(const TimeGroup &group, int width, int textWidth);

} // namespace Tsb
