#include "gui/browser/drawing/barhiding.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace Tsb {

namespace {

/// So many layers hide what lies beneath, where each covers the least share of a column that the raster engine knows:
/// (63 / 64)^448 is less than 1 / 512.
constexpr int enoughLayers = 448;
/// Amid a bar only its upper and lower edges may cover a part of a pixel, and then a quarter at least: that counts as
/// so many layers, as (3 / 4)^(448 / 16) is less than 1 / 512, too.
constexpr int layersAmid = 16;

constexpr std::size_t full = 0; ///< outlined and filled over the whole height: covers every other kind

std::size_t placeOf(const BarHiding::Kind &kind)
{
    return (kind.outlined ? 0u : 1u) + (kind.filled ? 0u : 2u) + (kind.half ? 4u : 0u);
}

} // namespace

BarHiding::BarHiding(int first, int last) : m_first(first), m_last(std::max(first, last))
{
    for (Columns &columns : m_columns) {
        columns.layers.resize(std::size_t(m_last - m_first));
        columns.open.resize(columns.layers.size() + 1);
        std::iota(columns.open.begin(), columns.open.end(), 0);
    }
}

bool BarHiding::isSeen(const BarEnds &ends, const Kind &kind)
{
    const double outline = kind.outlined ? 0.5 : 0;
    const auto column = [this](double x) { return int(std::clamp(x, double(m_first), double(m_last))) - m_first; };
    const int begin = column(std::floor(ends.x0 - outline)), end = column(std::ceil(ends.x1 + outline));
    const std::size_t place = placeOf(kind);
    if (begin >= end || nextOpen(m_columns[place], begin) >= end)
        return false;
    const int amidBegin = std::min(column(std::ceil(ends.x0 + outline)), end);
    const int amidEnd = std::max(column(std::floor(ends.x1 - outline)), amidBegin);
    for (std::size_t below = 0; below < m_columns.size(); ++below) {
        if (below != place && place != full)
            continue;
        cover(m_columns[below], begin, amidBegin, 1);
        cover(m_columns[below], amidBegin, amidEnd, layersAmid);
        cover(m_columns[below], amidEnd, end, 1);
    }
    return true;
}

int BarHiding::nextOpen(Columns &columns, int column)
{
    int found = column;
    while (columns.open[std::size_t(found)] != found)
        found = columns.open[std::size_t(found)];
    while (columns.open[std::size_t(column)] != found) // the next search is a short one
        column = std::exchange(columns.open[std::size_t(column)], found);
    return found;
}

void BarHiding::cover(Columns &columns, int begin, int end, int layers)
{
    for (int c = nextOpen(columns, begin); c < end; c = nextOpen(columns, c + 1)) {
        int &all = columns.layers[std::size_t(c)];
        all += layers;
        if (all >= enoughLayers)
            columns.open[std::size_t(c)] = c + 1;
    }
}

} // namespace Tsb
