#pragma once

#include "axis/timescale.h"
#include "gui/common/recordnotes.h"

#include <optional>

class QPainter;

/// The marks at the foot of a strip under the records that have a note: small triangles that begin where the record
/// does. The cost goes with the columns, not with the notes.
namespace Tsb::NoteMarks {

constexpr int markWidth = 7; ///< columns, with an edge of one more on both sides

/// Draws into the columns first .. last - 1 of a picture of that height, and no other.
void draw(QPainter &painter, int height, const RecordNotes &notes, const TimeScale &scale, int first, int last);
/// The note of the mark nearest to the column; nothing if none is near it.
std::optional<RecordNotes::Note> noteAt(const RecordNotes &notes, const TimeScale &scale, int column);

/// The column in which the mark of a record with that begin begins.
int columnOf(RecordTime begin, const TimeScale &scale);

} // namespace Tsb::NoteMarks
