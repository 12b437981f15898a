#include "gui/browser/drawing/scatterseries.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr double reach = 3; ///< columns beside an image whose markers may reach into it

} // namespace

ColumnFinder::ColumnFinder(const TimeScale &scale, int first, int last)
    : m_scale(scale), m_position(scale), m_first(std::max(first, 0)), m_last(last)
{
}

int ColumnFinder::find(std::int64_t tick)
{
    const double x = m_position(tick);
    m_from = m_until = 0;
    if (!(x > m_first - reach && x < m_last + reach)) {
        m_column = m_first - 16;
        return m_column;
    }
    m_column = int(x + 16.5) - 16; // x is above -16
    // Near the column's edges each moment is rounded by itself, by the formula: the bounds are only as good as this.
    constexpr double doubt = 1e-6;
    constexpr std::int64_t farOrigin = 100'000'000; // columns; beyond it the formula is less exact than the doubt
    const double perPixel = double(m_scale.ticksPerPixel);
    const std::int64_t distance = saturatedSubtract(m_column, m_scale.originPixel);
    if (distance > -farOrigin && distance < farOrigin && std::abs(double(distance)) * perPixel < 4e18) {
        const auto tickOf = [&](double columns) {
            return saturatedAdd(ticksOf(m_scale.originTick), std::int64_t(std::floor(columns * perPixel)));
        };
        m_from = saturatedAdd(tickOf(double(distance) - 0.5 + doubt), 1);
        m_until = tickOf(double(distance) + 0.5 - doubt);
    }
    return m_column;
}

std::pair<std::size_t, std::size_t> runInSight(const SpanIndex &spans, const TimeScale &scale, int first, int last)
{
    const std::int64_t from = ticksOf(scale.tickAt(std::int64_t(first) - 1));
    const std::int64_t until = ticksOf(scale.tickAt(std::int64_t(last) + 1));
    const std::size_t end = spans.lowerBound(until);
    std::size_t begin = std::min(spans.lowerBound(from), end); // an entry that begins later ends later, too
    while (begin > 0 && spans.end(begin - 1) >= from)
        --begin;
    return {begin, end};
}

std::size_t commonRun(const std::vector<ScatterCursor> &cursors)
{
    if (cursors.empty())
        return 0;
    std::size_t count = SpanIndex::blockSize;
    for (const ScatterCursor &cursor : cursors) {
        if (cursor.next >= cursor.end)
            return 0;
        count = std::min({count, cursor.end - cursor.next, cursor.spans->runFrom(cursor.next).size});
    }
    const SpanIndex::Run first = cursors[0].spans->runFrom(cursors[0].next);
    for (std::size_t c = 1; c < cursors.size(); ++c) {
        const SpanIndex::Run other = cursors[c].spans->runFrom(cursors[c].next);
        if (!std::equal(first.begins, first.begins + count, other.begins) ||
            !std::equal(first.ends, first.ends + count, other.ends))
            return 0;
    }
    return count;
}

QString electrometerSeriesName(const Spectrometer::RecordMetadata &metadata, int electrometer)
{
    QString name = metadata.electrometerNames.value(electrometer);
    for (const char *group : {"pos", "neg"}) {
        const Spectrometer::ChannelRange channels = metadata.electrometerGroups.value(QString::fromLatin1(group));
        if (electrometer >= channels.first && electrometer < channels.end)
            name += QLatin1Char(' ') + QLatin1String(group);
    }
    return name;
}

} // namespace Tsb
