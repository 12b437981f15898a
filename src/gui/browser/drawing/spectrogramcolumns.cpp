#include "gui/browser/drawing/spectrogramcolumns.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr double farColumn = 1e6;

int roundedColumn(double x)
{
    return int(std::round(std::clamp(x, -farColumn, farColumn)));
}

/// How far a record grows into a gap of g columns beside it. An overlap is a negative gap and gives ground half way.
double padOf(double g)
{
    if (g < 10)
        return g / 2;
    return g < 20 ? 10 - g / 2 : 0;
}

class ColumnPlanner {
public:
    ColumnPlanner(const SpectrogramSource &source, const ColumnParameters &parameters, int width, int offset)
        : m_source(source), m_spans(source.spans), m_parameters(parameters), m_width(width), m_offset(offset)
    {
    }

    std::vector<ColumnRun> plan(const PixelRange &columns)
    {
        m_first = std::max(0, columns.first + m_offset);
        m_last = std::min(m_width, columns.last + m_offset);
        if (m_first >= m_last)
            return {};
        m_owners.assign(std::size_t(m_last - m_first), nullptr);
        const auto [begin, end] = m_source.entriesAround(m_parameters.scale, columns.first, columns.last);
        for (std::size_t i = nextToLookAt(begin); i < end && m_covered < m_width; i = nextToLookAt(i + 1))
            place(i);
        return runs();
    }

private:
    double position(std::int64_t tick) const { return m_parameters.scale.positionOf(recordTimeFromTicks(tick)); }

    /// The first entry from i on that may reach beyond the columns that are covered. An entry grows no further than
    /// half way to its follower's begin, and to at most one column beyond where it rounds to.
    std::size_t nextToLookAt(std::size_t i) const
    {
        constexpr double roundingSlack = 0.51;
        const TimeScale &scale = m_parameters.scale;
        const double columns = m_covered - m_offset - roundingSlack - double(scale.originPixel);
        const double ticks = columns * double(scale.ticksPerPixel);
        if (!(std::abs(ticks) < 9e18))
            return i;
        const std::int64_t tick = saturatedAdd(ticksOf(scale.originTick), std::int64_t(std::floor(ticks)));
        return m_parameters.fillGaps ? m_spans.firstReachingFrom(i, tick) : m_spans.firstEndingFrom(i, tick);
    }

    void place(std::size_t i)
    {
        const double right0 = position(m_spans.end(i));
        const double left0 = position(m_spans.begin(i));
        double padLeft = 0, padRight = 0;
        if (m_parameters.fillGaps) {
            if (i > 0)
                padLeft = padOf(left0 - position(m_spans.end(i - 1)));
            if (i + 1 < m_spans.size())
                padRight = padOf(position(m_spans.begin(i + 1)) - right0);
        }
        padLeft = std::min(padLeft, padRight + 1);
        padRight = std::min(padRight, padLeft + 1);
        int right = roundedColumn(right0 + padRight + m_offset);
        int left = roundedColumn(left0 - padLeft + m_offset);
        if (left == right)
            right = left + 1;
        left = std::max(left, 0);
        if (left >= m_width)
            return;
        right = std::min(right, m_width);
        if (right <= m_covered || right <= left)
            return;
        const double *values = m_source.values(i, std::size_t(m_parameters.binCount));
        if (!values)
            return;
        m_covered = right;
        if (std::max(left, m_first) < std::min(right, m_last))
            std::fill(m_owners.begin() + (std::max(left, m_first) - m_first),
                      m_owners.begin() + (std::min(right, m_last) - m_first), values);
    }

    std::vector<ColumnRun> runs() const
    {
        std::vector<ColumnRun> result;
        result.reserve(m_owners.size());
        for (int column = m_first; column < m_last; ++column) {
            const double *values = m_owners[std::size_t(column - m_first)];
            if (!values)
                continue;
            if (!result.empty() && result.back().values == values && result.back().right == column)
                ++result.back().right;
            else
                result.push_back({column, column + 1, values});
        }
        return result;
    }

    const SpectrogramSource &m_source;
    const SpanIndex &m_spans;
    const ColumnParameters &m_parameters;
    int m_width;
    int m_offset;
    int m_first = 0;
    int m_last = 0;
    int m_covered = 0;
    std::vector<const double *> m_owners; ///< what the columns from m_first on show
};

} // namespace

const double *SpectrogramSource::valuesOf(const SpectrumRecord &entry, std::size_t binCount)
{
    const SpectMath::Spectrum *spectrum = entry.spectrum.get();
    if (!spectrum || spectrum->concentrations.size() != binCount || spectrum->status != 0)
        return nullptr;
    return spectrum->concentrations.data().begin();
}

std::pair<std::size_t, std::size_t> SpectrogramSource::entriesAround(const TimeScale &scale, int first, int last) const
{
    const std::size_t begin = spans.lowerBound(ticksOf(scale.tickAt(first - 2)));
    const std::size_t end = spans.lowerBound(ticksOf(scale.tickAt(last + 2)));
    return {begin > 0 ? begin - 1 : 0, std::min(spans.size(), end + 1)};
}

std::vector<ColumnRun> planColumns(const SpectrogramSource &source, const ColumnParameters &parameters, int width,
                                   const PixelRange &columns, int offset)
{
    return ColumnPlanner(source, parameters, width, offset).plan(columns);
}

} // namespace Tsb
