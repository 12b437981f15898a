#include "columns/measurement.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

double toldValue(const MeasuredCurve &curve, std::size_t entry)
{
    constexpr double naturalPerDecade = 2.302585092994045684;
    const double kept = curve.values[entry];
    if (!curve.valueWithoutLogarithm)
        return kept;
    return kept == -std::numeric_limits<double>::infinity() ? curve.valueWithoutLogarithm(entry)
                                                            : std::exp(kept * naturalPerDecade);
}

std::int64_t middleOf(std::int64_t begin, std::int64_t end)
{
    return saturatedAdd(begin, saturatedSubtract(end, begin) / 2);
}

/// Adds values up block by block, so that half a million of them lose no digits that are shown.
class FigureCounter {
public:
    void include(double value)
    {
        if (!std::isfinite(value))
            return;
        ++m_count;
        m_least = std::min(m_least, value);
        m_greatest = std::max(m_greatest, value);
        m_blockSum += value;
    }
    void endBlock()
    {
        m_sum += m_blockSum;
        m_blockSum = 0;
    }
    SpanFigures figures() const
    {
        if (m_count == 0)
            return {};
        return {m_count, m_least, m_greatest, (m_sum + m_blockSum) / double(m_count)};
    }

private:
    std::size_t m_count = 0;
    double m_least = std::numeric_limits<double>::infinity();
    double m_greatest = -std::numeric_limits<double>::infinity();
    double m_sum = 0, m_blockSum = 0;
};

} // namespace

SpanFigures figuresBetween(const MeasuredCurve &curve, RecordTime from, RecordTime until)
{
    const std::int64_t first = ticksOf(from), last = ticksOf(until);
    if (first > last)
        return figuresBetween(curve, until, from);
    const std::int64_t behind = saturatedAdd(last, 1);
    const SpanIndex &spans = curve.spans;
    FigureCounter counter;
    const std::size_t end = spans.lowerBound(behind);
    for (std::size_t i = spans.firstEndingFrom(0, first); i < end;) {
        const SpanIndex::Run run = spans.runFrom(i);
        const std::size_t size = std::min(run.size, end - i);
        const bool areAllBetween = spans.blockLiesWithin(i, first, behind);
        for (std::size_t k = 0; k < size; ++k) {
            const std::int64_t middle = areAllBetween ? first : middleOf(run.begins[k], run.ends[k]);
            if (middle >= first && middle <= last)
                counter.include(toldValue(curve, i + k));
        }
        counter.endBlock();
        i += size;
    }
    return counter.figures();
}

ValueAt valueAt(const MeasuredCurve &curve, RecordTime moment)
{
    const SpanIndex &spans = curve.spans;
    const std::int64_t tick = ticksOf(moment);
    const auto hasValue = [&curve](std::size_t entry) { return !std::isnan(curve.values[entry]); };
    const std::size_t size = spans.size();
    std::size_t next = spans.lowerBound(tick), previousEnd = next;
    while (next < size && !hasValue(next))
        ++next;
    while (previousEnd > 0 && !hasValue(previousEnd - 1))
        --previousEnd;
    if (next == size && previousEnd == 0)
        return {};
    const bool takesPrevious = next == size || (previousEnd > 0 && saturatedSubtract(tick, spans.end(previousEnd - 1)) <
                                                                       saturatedSubtract(spans.begin(next), tick));
    const std::size_t found = takesPrevious ? previousEnd - 1 : next;
    return {toldValue(curve, found), recordTimeFromTicks(middleOf(spans.begin(found), spans.end(found)))};
}

CurveFigures figuresOf(const MeasuredCurve &curve, const std::array<std::optional<RecordTime>, 2> &cursors)
{
    CurveFigures figures;
    for (std::size_t which = 0; which < cursors.size(); ++which)
        if (cursors[which])
            figures.at[which] = valueAt(curve, *cursors[which]);
    if (cursors[0] && cursors[1])
        figures.between = figuresBetween(curve, *cursors[0], *cursors[1]);
    return figures;
}

} // namespace Tsb
