#pragma once

#include "util/recordtime.h"

#include <QMetaType>

/// The mapping between time and pixel columns that all plots of a browser share: a plain value.
struct TimeScale {
    static constexpr std::int64_t leastTicksPerPixel = 1;
    static constexpr std::int64_t greatestTicksPerPixel = 1'000'000'000'000; ///< 27.8 hours a pixel
    /// Pixel columns are held within this distance of 0, so that sums of a few of them stay in an int.
    static constexpr std::int64_t farPixel = std::int64_t(1) << 30;

    RecordTime originTick{};                     ///< the moment at the column originPixel
    std::int64_t ticksPerPixel = ticksPerSecond; ///< positive
    std::int64_t originPixel = 0;                ///< a column of the plot's contents rectangle

    TimeScale() = default;
    TimeScale(RecordTime tick, std::int64_t perPixel, std::int64_t pixel)
        : originTick(tick), ticksPerPixel(perPixel), originPixel(pixel)
    {
    }

    /// The moment at the left of column x; held within 64 bits.
    RecordTime tickAt(std::int64_t x) const;
    /// The column of a moment by integer division, which truncates towards the origin.
    std::int64_t columnOf(RecordTime time) const;
    /// The same, held within ±farPixel.
    int pixelAt(RecordTime time) const;
    /// The column of a moment as a real number, by the formula that all drawing uses.
    double positionOf(RecordTime time) const;
    /// The same mapping with its origin at column x.
    TimeScale rebased(std::int64_t x) const;
    /// True if a picture drawn with this scale becomes one of `other` when it is moved by whole columns. *shift is then
    /// set to their number, held within ±farPixel; it is left alone otherwise.
    bool pixelShiftFrom(const TimeScale &other, int *shift) const;
    /// True if `width` columns around the window lie within the 64-bit range of times.
    bool isRepresentable(int width) const;
};

inline bool operator==(const TimeScale &a, const TimeScale &b)
{
    return a.originTick == b.originTick && a.ticksPerPixel == b.ticksPerPixel && a.originPixel == b.originPixel;
}
inline bool operator!=(const TimeScale &a, const TimeScale &b)
{
    return !(a == b);
}

/// A column number held within ±TimeScale::farPixel; 0 for NaN.
int saturatedPixel(std::int64_t x);
int saturatedPixel(double x);

Q_DECLARE_METATYPE(TimeScale)
