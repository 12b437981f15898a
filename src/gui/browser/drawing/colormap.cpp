#include "gui/browser/drawing/colormap.h"
#include "gui/browser/drawing/colormaptables.h"

#include <algorithm>

namespace Colormap {

namespace {

constexpr int segmentEntries = 1000;

uint channelBits(double c)
{
    return uint(int(c * 255)) & 0xFFu;
}

uint pack(double red, double green, double blue)
{
    return 0xFF000000u | channelBits(red) << 16 | channelBits(green) << 8 | channelBits(blue);
}

double segmentValue(const SegmentTable &table, double v)
{
    if (table.empty())
        return 0.0;
    if (v < table.front().x)
        return table.front().yAbove;
    if (v >= table.back().x)
        return table.back().yAbove;
    if (table.size() < 2)
        return 0.0;
    for (std::size_t k = 1; k < table.size(); ++k) {
        const SegmentPoint &a = table[k - 1];
        const SegmentPoint &b = table[k];
        if (b.x > v)
            return (b.yBelow - a.yAbove) * (v - a.x) / (b.x - a.x) + a.yAbove;
    }
    return table.front().yAbove; // not a number
}

Map makeJet()
{
    return LinearSegmentedColormap({{0, 0, 0}, {0.35, 0, 0}, {0.66, 1, 1}, {0.89, 1, 1}, {1, 0.5, 0.5}},
                                   {{0, 0, 0}, {0.125, 0, 0}, {0.375, 1, 1}, {0.64, 1, 1}, {0.91, 0, 0}, {1, 0, 0}},
                                   {{0, 0.5, 0.5}, {0.11, 1, 1}, {0.34, 1, 1}, {0.65, 0, 0}, {1, 0, 0}});
}

Map makeHot()
{
    return LinearSegmentedColormap({{0, 0.0416, 0.0416}, {0.365079, 1, 1}, {1, 1, 1}},
                                   {{0, 0, 0}, {0.365079, 0, 0}, {0.746032, 1, 1}, {1, 1, 1}},
                                   {{0, 0, 0}, {0.746032, 0, 0}, {1, 1, 1}});
}

Map fromTable(const RgbTable &table)
{
    return CachedColormap(table.data(), int(table.size()));
}

} // namespace

LinearSegmentedColormap::LinearSegmentedColormap(SegmentTable red, SegmentTable green, SegmentTable blue)
    : m_tables(std::make_shared<const std::array<SegmentTable, 3>>(
          std::array<SegmentTable, 3>{std::move(red), std::move(green), std::move(blue)}))
{
}

uint LinearSegmentedColormap::operator()(double v) const
{
    const auto &[red, green, blue] = *m_tables;
    return pack(segmentValue(red, v), segmentValue(green, v), segmentValue(blue, v));
}

CachedColormap::CachedColormap(const Map &map, int size)
{
    std::vector<uint> entries(std::size_t(std::max(size, 2)));
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i] = map(double(i) / double(entries.size() - 1));
    m_entries = std::make_shared<const std::vector<uint>>(std::move(entries));
}

CachedColormap::CachedColormap(const Rgb *rows, int size)
{
    std::vector<uint> entries;
    entries.reserve(std::size_t(size));
    std::transform(rows, rows + size, std::back_inserter(entries),
                   [](const Rgb &row) { return pack(row.red, row.green, row.blue); });
    m_entries = std::make_shared<const std::vector<uint>>(std::move(entries));
}

ThresholdColormap::ThresholdColormap(Map inner, double threshold, double opacity)
    : m_opacity(opacity), m_inner(std::move(inner)), m_threshold(threshold)
{
}

uint ThresholdColormap::zoneColor(uint color, double v) const
{
    const double base = v > m_threshold ? (1 - m_opacity) * 255 : 0.0;
    const auto mixed = [&](int shift) {
        return (uint(int(base + double(color >> shift & 0xFFu) * m_opacity)) & 0xFFu) << shift;
    };
    return 0xFF000000u | mixed(16) | mixed(8) | mixed(0);
}

uint grayscale(double v)
{
    const uint g = uint(CachedColormap::indexOf(v, 256));
    return 0xFF000000u | g << 16 | g << 8 | g;
}

const std::vector<std::string> &names()
{
    static const std::vector<std::string> list{"jet", "viridis", "plasma", "inferno", "hot", "grayscale"};
    return list;
}

Map make(int index)
{
    switch (index) {
    case 0:
        return CachedColormap(makeJet(), segmentEntries);
    case 1:
        return fromTable(viridisTable);
    case 2:
        return fromTable(plasmaTable);
    case 3:
        return fromTable(infernoTable);
    case 4:
        return CachedColormap(makeHot(), segmentEntries);
    case 5:
        return grayscale;
    default:
        return {};
    }
}

int indexOfName(const std::string &name)
{
    const auto &all = names();
    const auto it = std::find(all.begin(), all.end(), name);
    return it == all.end() ? -1 : int(it - all.begin());
}

} // namespace Colormap
