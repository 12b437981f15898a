#pragma once

#include "store/spanindex.h"
#include "util/numeric.h"
#include "util/recordtime.h"

#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>

namespace Tsb {

/// A curve as measuring sees it: the values that a plot keeps beside the entries of a store or a series. Borrowed for a
/// call.
struct MeasuredCurve {
    const SpanIndex &spans;
    const double *values; ///< entry for entry; NaN where there is none
    /// Null where values are kept as they are told. Otherwise they are kept in decades, and this tells the value of an
    /// entry that has no logarithm, because it is 0 or negative.
    std::function<double(std::size_t entry)> valueWithoutLogarithm = nullptr;
};

/// What lies between two moments of a curve: the finite values of the entries whose middle lies there, the moments
/// included. A middle is the place where a plot puts the point. The mean is that of the values, each counted once,
/// whatever the length of its record.
struct SpanFigures {
    std::size_t count = 0;
    double least = noValue; ///< these are NaN without values
    double greatest = noValue;
    double mean = noValue;
};

/// Costs the entries between the moments.
SpanFigures figuresBetween(const MeasuredCurve &curve, RecordTime from, RecordTime until);

/// The value at a moment is that of the entry which a click there would choose among those that have one: the one that
/// covers the moment, or beside a gap the nearer one.
struct ValueAt {
    double value = noValue; ///< NaN where the curve has no value at all
    RecordTime middle;      ///< of its record
};
ValueAt valueAt(const MeasuredCurve &curve, RecordTime moment);

/// All that is told of one curve. What belongs to a cursor that isn't set is NaN, or 0 entries.
struct CurveFigures {
    QString name;
    QString unit; ///< empty if it has none
    std::array<ValueAt, 2> at;
    SpanFigures between;
};
/// Without name and unit.
CurveFigures figuresOf(const MeasuredCurve &curve, const std::array<std::optional<RecordTime>, 2> &cursors);

} // namespace Tsb
