#pragma once

#include <QtGlobal>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Colour maps: functions from 0..1 to an opaque colour, quick enough for one call per pixel row of a spectrogram.
/// Any double may be passed: a value below 0 and one that is no number get the lowest colour, a value above 1 the
/// highest.
namespace Colormap {

/// Takes the normalised value, returns 0xFFRRGGBB. May be empty, which stands for "no map".
using Map = std::function<uint(double)>;

struct Rgb;

/// One corner of a channel: left of x the channel runs towards yBelow, right of x it starts from yAbove.
struct SegmentPoint {
    double x, yBelow, yAbove;
};
using SegmentTable = std::vector<SegmentPoint>;

/// Straight segments between the corners of three tables, each with rising x.
class LinearSegmentedColormap {
public:
    LinearSegmentedColormap(SegmentTable red, SegmentTable green, SegmentTable blue);
    uint operator()(double v) const;

private:
    std::shared_ptr<const std::array<SegmentTable, 3>> m_tables;
};

/// A table of colours; entry trunc((n - 1) * v). Copies share the table.
class CachedColormap {
public:
    /// entries[i] = map(i / (size - 1)); size is at least 2.
    CachedColormap(const Map &map, int size);
    CachedColormap(const Rgb *rows, int size);

    uint operator()(double v) const { return (*m_entries)[std::size_t(indexOf(v, int(m_entries->size())))]; }
    const std::vector<uint> &entries() const { return *m_entries; }

    /// Decided in doubles: an infinite or huge product has no int.
    static int indexOf(double v, int size) { return !(v > 0) ? 0 : v >= 1 ? size - 1 : int((size - 1) * v); }

private:
    std::shared_ptr<const std::vector<uint>> m_entries;
};

/// Two zones of another map: washed towards white above the threshold, darkened at and below it.
class ThresholdColormap {
public:
    ThresholdColormap(Map inner, double threshold, double opacity);
    uint operator()(double v) const { return zoneColor(m_inner(v), v); }

    const Map &inner() const { return m_inner; }
    double threshold() const { return m_threshold; }
    /// The colour that the zone makes of the inner map's colour at value v.
    uint zoneColor(uint color, double v) const;

private:
    double m_opacity;
    Map m_inner;
    double m_threshold;
};

/// Black to white in 256 steps.
uint grayscale(double v);

/// In the order of the menus: "jet", "viridis", "plasma", "inferno", "hot", "grayscale".
const std::vector<std::string> &names();
/// The map of an index in names(); empty for any other index.
Map make(int index);
/// The place of a name in names(), or -1.
int indexOfName(const std::string &name);

} // namespace Colormap
