#include "gui/browser/drawing/scatterlines.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Tsb {

namespace {

constexpr std::uint8_t unknownPen = 255;
constexpr int mostModes = 127;
constexpr std::uint32_t mostRecordLines = 2; ///< raw and processed currents

/// The first of the places from .. to - 1 that holds; `to` if none does. What holds at one place holds at all behind
/// it. Looked for around the guess in steps that double.
template<typename Holds>
std::size_t firstPlace(std::size_t from, std::size_t to, std::size_t guess, Holds holds)
{
    std::size_t step = 1;
    if (guess < from || guess >= to)
        guess = from;
    if (from < to && holds(guess)) {
        to = guess;
        while (from < to && holds(to - std::min(step, to - from)))
            to -= std::min(std::exchange(step, 2 * step), to - from);
        from = to - std::min(step, to - from);
    } else {
        from = std::min(to, guess + 1);
        while (from < to && !holds(from + std::min(step, to - from) - 1))
            from += std::min(std::exchange(step, 2 * step), to - from);
        to = std::min(to, from + step);
    }
    while (from < to) {
        const std::size_t middle = from + (to - from) / 2;
        if (holds(middle))
            to = middle;
        else
            from = middle + 1;
    }
    return from;
}

template<typename Line, typename IsWanted>
std::optional<Line> release(std::vector<Line> &lines, IsWanted isWanted)
{
    const auto found = std::find_if(lines.begin(), lines.end(), isWanted);
    if (found == lines.end())
        return {};
    std::optional<Line> line(std::move(*found));
    lines.erase(found);
    return line;
}

} // namespace

ScatterLines::ScatterLines()
{
    m_pens.setValueOfMarks([](const RecordMarks &record) {
        const bool known = record.opmode >= 0 && record.opmode < mostModes;
        return known ? std::uint8_t(2 * record.opmode + (record.regular ? 0 : 1)) : unknownPen;
    });
}

void ScatterLines::clear()
{
    m_recordLines.clear();
    m_spectrumLines.clear();
}

void ScatterLines::add(RecordLine line)
{
    m_recordLines.push_back(std::move(line));
}

void ScatterLines::add(SpectrumLine line)
{
    m_spectrumLines.push_back(std::move(line));
}

std::optional<ScatterLines::RecordLine> ScatterLines::releaseRecordLine(const RecordSlot &slot)
{
    return release(m_recordLines, [&slot](const RecordLine &line) { return line.values.reads() == slot; });
}

std::optional<ScatterLines::SpectrumLine> ScatterLines::releaseSpectrumLine(const SpectMath::SpectrumInfo *info)
{
    return release(m_spectrumLines, [info](const SpectrumLine &line) { return line.info.get() == info; });
}

void ScatterLines::noteRecord(const Datastore &store, int index, const Record &record)
{
    m_pens.noteUpdated(store, index, record);
    for (RecordLine &line : m_recordLines)
        line.values.noteUpdated(store, index, record);
}

void ScatterLines::noteSpectra(const Datastore &store, const std::shared_ptr<Record> &record)
{
    for (SpectrumLine &line : m_spectrumLines)
        line.values.noteUpdated(store, record);
}

void ScatterLines::bringUpToDate(const std::vector<ScatterLines *> &all, const Datastore &store)
{
    std::vector<RecordColumn<double> *> columns;
    for (ScatterLines *lines : all) {
        for (RecordLine &line : lines->m_recordLines)
            columns.push_back(&line.values);
    }
    RecordColumn<double>::bringUpToDate(columns, store);
}

FiniteRange ScatterLines::rangeInSight(const Datastore &store, const TimeScale &scale, int width)
{
    FiniteRange range;
    const auto include = [&](auto &line, const SpanIndex &spans) {
        const auto run = runInSight(spans, scale, -1, width + 1);
        range.include(line.values.values(store) + run.first, run.second - run.first);
    };
    for (SpectrumLine &line : m_spectrumLines)
        include(line, store.seriesSpans(line.info.get()));
    for (RecordLine &line : m_recordLines)
        include(line, store.recordSpans());
    return range;
}

QVector<CurveFigures> ScatterLines::measure(const Datastore &store, bool areDecades,
                                            const std::array<std::optional<RecordTime>, 2> &cursors)
{
    QVector<CurveFigures> curves;
    for (RecordLine &line : m_recordLines)
        curves.append(figuresOf({store.recordSpans(), line.values.values(store)}, cursors));
    for (SpectrumLine &line : m_spectrumLines) {
        const auto series = store.series(line.info.get());
        MeasuredCurve curve{store.seriesSpans(line.info.get()), line.values.values(store)};
        if (areDecades)
            curve.valueWithoutLogarithm = [&](std::size_t i) { return line.valueOf(*(*series)[i].spectrum); };
        curves.append(figuresOf(curve, cursors));
    }
    return curves;
}

std::size_t ScatterLines::countOffScale(const Datastore &store, const TimeScale &scale, int width,
                                        const ValueScale &valueScale, int height)
{
    std::size_t count = 0;
    std::array<MarkerPlace, SpanIndex::blockSize> places;
    const auto add = [&](auto &line, const SpanIndex &spans) {
        const auto run = runInSight(spans, scale, 0, width);
        const double *const values = line.values.values(store);
        for (std::size_t i = run.first; i < run.second;) {
            const std::size_t some = std::min(run.second - i, places.size());
            MarkerPlaces::of(valueScale, height, values + i, some, places.data());
            count +=
                std::size_t(std::count_if(places.begin(), places.begin() + std::ptrdiff_t(some), [](MarkerPlace p) {
                    return p == MarkerPlaces::aboveTop || p == MarkerPlaces::belowBottom;
                }));
            i += some;
        }
    };
    for (SpectrumLine &line : m_spectrumLines)
        add(line, store.seriesSpans(line.info.get()));
    for (RecordLine &line : m_recordLines)
        add(line, store.recordSpans());
    return count;
}

void ScatterLines::draw(const Frame &frame)
{
    if (!m_spectrumLines.empty())
        drawSpectrumLines(frame);
    if (!m_recordLines.empty())
        drawRecordLines(frame);
}

/// The places of a line's markers, block by block.
class ScatterLines::PlaceSource {
public:
    PlaceSource(const ValueScale &scale, int height, const double *values, const MarkerPlace *kept)
        : m_scale(scale), m_height(height), m_values(values), m_kept(kept)
    {
    }
    /// Of at most a block's entries from i on; until the next call.
    const MarkerPlace *at(std::size_t i, std::size_t count)
    {
        if (m_kept)
            return m_kept + i;
        MarkerPlaces::of(m_scale, m_height, m_values + i, count, m_some.data());
        return m_some.data();
    }

private:
    ValueScale m_scale;
    int m_height;
    const double *m_values;
    const MarkerPlace *m_kept; ///< of all entries; null: worked out as they are asked for
    std::array<MarkerPlace, SpanIndex::blockSize> m_some;
};

/// A few columns are drawn without what is kept: to bring that up to date would cost what the whole line costs.
template<typename Line>
ScatterLines::PlaceSource ScatterLines::placesOf(Line &line, const Frame &frame, std::size_t size, std::size_t drawn)
{
    const int height = frame.image.height();
    const double *const values = line.values.values(frame.store);
    const bool keep = drawn > size / 8;
    return {frame.valueScale, height, values,
            keep ? line.places.places(frame.valueScale, height, values, size, line.values.revision()) : nullptr};
}

/// Calls mark(i, n) for runs of the entries first .. first + count - 1 of a block that stand on one column, which
/// is set.
template<typename Mark>
void ScatterLines::markByColumn(MarkerPainter &marker, ColumnFinder &column, const SpanIndex &spans, std::size_t first,
                                std::size_t count, Mark mark)
{
    spans.fetchIfCrossing(first + 2 * SpanIndex::blockSize, column.until());
    if (column.holdsBlockOf(spans, first)) {
        marker.setColumn(column.column());
        mark(0, count);
        return;
    }
    const SpanIndex::Run run = spans.runFrom(first);
    const auto middle = [&run](std::size_t k) { return middleTick(run.begins[k], run.ends[k]); };
    for (std::size_t k = 0; k < count;) {
        const int here = column(k == 0 ? middleTick(run.firstBegin, run.firstEnd) : middle(k));
        std::size_t end = k + 1;
        if (run.endsAscend)
            end = firstPlace(end, count, spans.guessInRun(first, column.until()),
                             [&](std::size_t i) { return middle(i) >= column.until(); });
        while (end < count && column(middle(end)) == here)
            ++end;
        marker.setColumn(here);
        mark(k, end - k);
        k = end;
    }
}

void ScatterLines::drawRecordLines(const Frame &frame)
{
    const SpanIndex &spans = frame.store.recordSpans();
    const auto run = runInSight(spans, frame.timeScale, frame.first - 2, frame.last + 2);
    const std::uint8_t *const pens = m_pens.values(frame.store);
    std::vector<PlaceSource> lines;
    for (RecordLine &line : m_recordLines)
        lines.push_back(placesOf(line, frame, spans.size(), run.second - run.first));
    // A marker's name counts records and, in each, lines.
    const auto nameOf = [](std::size_t record, std::size_t line) {
        return MarkerPainter::Name(record * mostRecordLines + line);
    };
    MarkerPainter marker(frame.image, frame.first, frame.last, [&](MarkerPainter::Name name) {
        return m_recordLines[name % mostRecordLines].colorOf(pens[name / mostRecordLines]);
    });
    ColumnFinder column(frame.timeScale, frame.first, frame.last);
    for (std::size_t i = run.first; i < run.second;) {
        const std::size_t count = std::min(run.second - i, spans.runFrom(i).size);
        std::array<const MarkerPlace *, mostRecordLines> places;
        for (std::size_t l = 0; l < lines.size(); ++l)
            places[l] = lines[l].at(i, count);
        markByColumn(marker, column, spans, i, count, [&](std::size_t k, std::size_t some) {
            for (std::size_t l = 0; l < lines.size(); ++l)
                marker.markEach(places[l] + k, some, lines.size(), l, nameOf(i + k, l), nameOf(1, 0));
        });
        i += count;
    }
}

void ScatterLines::drawSpectrumLines(const Frame &frame)
{
    std::vector<ScatterCursor> cursors;
    std::vector<PlaceSource> lines;
    for (SpectrumLine &line : m_spectrumLines) {
        const SpanIndex &spans = frame.store.seriesSpans(line.info.get());
        const auto run = runInSight(spans, frame.timeScale, frame.first - 2, frame.last + 2);
        cursors.push_back({&spans, run.first, run.second});
        lines.push_back(placesOf(line, frame, spans.size(), run.second - run.first));
    }
    MarkerPainter marker(frame.image, frame.first, frame.last,
                         [&](MarkerPainter::Name name) { return m_spectrumLines[name].color; });
    ColumnFinder column(frame.timeScale, frame.first, frame.last);
    std::vector<const MarkerPlace *> places(cursors.size());
    const auto markCommon = [&](std::size_t count) {
        for (std::size_t c = 0; c < cursors.size(); ++c)
            places[c] = lines[c].at(cursors[c].next, count);
        const auto mark = [&](std::size_t k, std::size_t some) {
            for (std::size_t c = 0; c < cursors.size(); ++c)
                marker.markEach(places[c] + k, some, cursors.size(), c, MarkerPainter::Name(c), 0);
        };
        markByColumn(marker, column, *cursors[0].spans, cursors[0].next, count, mark);
        for (ScatterCursor &cursor : cursors)
            cursor.next += count;
    };
    const auto markOne = [&](const ScatterCursor &at, std::size_t i) {
        const std::ptrdiff_t c = &at - cursors.data();
        marker.setColumn(column(middleTick(at.spans->begin(i), at.spans->end(i))));
        marker.mark(*lines[std::size_t(c)].at(i, 1), MarkerPainter::Name(c));
    };
    for (bool more = true; more;) {
        if (const std::size_t count = commonRun(cursors))
            markCommon(count);
        else
            more = visitInTimeOrder(cursors, SpanIndex::blockSize, markOne);
    }
}

} // namespace Tsb
