#include "gui/browser/plots/notemarks.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Tsb::NoteMarks {

namespace {

const QColor markColor(46, 52, 54);
const QColor edgeColor(255, 255, 255); ///< sets the mark off from bars that are dark themselves
constexpr int reach = 3;               ///< columns beside a mark that count as it

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

/// Fills the lowest rows of the columns from `first` on, of each as many as are told.
void fillFeet(QPainter &painter, int height, int first, const std::vector<int> &feet, const QColor &color)
{
    for (auto run = feet.begin(); run != feet.end();) {
        const int foot = *run;
        const auto end = std::find_if(run, feet.end(), [foot](int other) { return other != foot; });
        if (foot > 0)
            painter.fillRect(first + int(run - feet.begin()), height - foot, int(end - run), foot, color);
        run = end;
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
    // How far marks and their edges rise in each column. They may overlap.
    std::vector<int> marks(std::size_t(std::max(last - first, 0))), edges(marks.size());
    visitColumns(notes, scale, first - markWidth, last + 1, [&](int column, const RecordNotes::Note &) {
        for (int x = std::max(column - 1, first); x < std::min(column + markWidth + 1, last); ++x) {
            const int rise = markWidth - std::max(x - column, 0);
            int &mark = marks[std::size_t(x - first)], &edge = edges[std::size_t(x - first)];
            if (x >= column)
                mark = std::max(mark, rise);
            edge = std::max(edge, rise + 1);
        }
    });
    fillFeet(painter, height, first, edges, edgeColor);
    fillFeet(painter, height, first, marks, markColor);
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
