#include "gui/browser/plots/notemarks.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Tsb::NoteMarks {

namespace {

const QColor markColor(46, 52, 54);
constexpr int reach = 3; ///< columns beside a mark that count as it

/// Calls visit(column, note) for the first note of each column from first to last - 1 that has one.
template<typename Visit>
void visitColumns(const RecordNotes &notes, const TimeScale &scale, int first, int last, Visit visit)
{
    for (auto note = notes.firstFrom(scale.tickAt(first)); note;) {
        const int column = columnOf(note->begin, scale);
        if (column >= last)
            return;
        visit(column, *note);
        const std::int64_t further = saturatedAdd(ticksOf(note->begin), 1);
        note = notes.firstFrom(recordTimeFromTicks(std::max(further, ticksOf(scale.tickAt(column + 1)))));
    }
}

} // namespace

int columnOf(RecordTime begin, const TimeScale &scale)
{
    // Rounded down on both sides of the origin, so that tickAt() of the next column is where this one ends.
    const std::int64_t ticks = saturatedSubtract(ticksOf(begin), ticksOf(scale.originTick));
    const std::int64_t columns = ticks / scale.ticksPerPixel - (ticks % scale.ticksPerPixel < 0);
    return saturatedPixel(saturatedAdd(columns, scale.originPixel));
}

void draw(QPainter &painter, int height, const RecordNotes &notes, const TimeScale &scale, int first, int last)
{
    std::vector<int> heights(std::size_t(std::max(last - first, 0))); // of the marks, which may overlap
    visitColumns(notes, scale, first - markWidth + 1, last, [&](int column, const RecordNotes::Note &) {
        for (int i = std::max(first - column, 0); i < std::min(markWidth, last - column); ++i) {
            int &mark = heights[std::size_t(column + i - first)];
            mark = std::max(mark, markWidth - i);
        }
    });
    for (auto run = heights.begin(); run != heights.end();) {
        const int mark = *run;
        const auto end = std::find_if(run, heights.end(), [mark](int other) { return other != mark; });
        if (mark > 0)
            painter.fillRect(first + int(run - heights.begin()), height - mark, int(end - run), mark, markColor);
        run = end;
    }
}

std::optional<RecordNotes::Note> noteAt(const RecordNotes &notes, const TimeScale &scale, int column)
{
    std::optional<RecordNotes::Note> nearest;
    int least = markWidth / 2 + reach + 1;
    visitColumns(notes, scale, column - markWidth - reach, column + reach + 1,
                 [&](int first, const RecordNotes::Note &note) {
                     const int distance = std::abs(first + markWidth / 2 - column);
                     if (distance >= least)
                         return;
                     least = distance;
                     nearest = note;
                 });
    return nearest;
}

} // namespace Tsb::NoteMarks
