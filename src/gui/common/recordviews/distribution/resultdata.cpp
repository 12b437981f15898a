#include "gui/common/recordviews/distribution/resultdata.h"

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

const QRectF nothing(0, 0, -1, -1); // what Qwt takes for unknown

/// Joins rectangles of no size too, which united() passes over.
void include(QRectF &all, const QRectF &one)
{
    if (all.width() < 0)
        all = one;
    else
        all.setCoords(std::min(all.left(), one.left()), std::min(all.top(), one.top()),
                      std::max(all.right(), one.right()), std::max(all.bottom(), one.bottom()));
}

} // namespace

QRectF finiteBoundingRect(const QwtSeriesData<QPointF> &data)
{
    QRectF all = nothing;
    for (size_t i = 0; i < data.size(); ++i) {
        const QPointF point = data.sample(i);
        if (std::isfinite(point.x()) && std::isfinite(point.y()))
            include(all, QRectF(point, QSizeF(0, 0)));
    }
    return all;
}

ResultData::ResultData(const RealVector &grid, const RealVector &values) : m_grid(grid), m_values(values) {}

size_t ResultData::size() const
{
    return std::min(m_grid.size(), m_values.size());
}

QPointF ResultData::sample(size_t i) const
{
    return {m_grid[i], m_values[i]};
}

QRectF ResultData::boundingRect() const
{
    return finiteBoundingRect(*this);
}

IntervalResultData::IntervalResultData(const RealVector &grid, const RealVector &values)
    : m_grid(grid), m_values(values)
{
}

size_t IntervalResultData::size() const
{
    return m_grid.size() < 2 ? 0 : std::min(m_grid.size() - 1, m_values.size());
}

QwtIntervalSample IntervalResultData::sample(size_t i) const
{
    const auto ends = std::minmax(m_grid[i], m_grid[i + 1]);
    const bool isBar = std::isfinite(ends.first) && std::isfinite(ends.second) && std::isfinite(m_values[i]);
    return QwtIntervalSample(m_values[i], isBar ? QwtInterval(ends.first, ends.second) : QwtInterval());
}

QRectF IntervalResultData::boundingRect() const
{
    QRectF all = nothing;
    for (size_t i = 0; i < size(); ++i) {
        const QwtIntervalSample bar = sample(i);
        if (bar.interval.isValid())
            include(all, QRectF(bar.interval.minValue(), bar.value, bar.interval.width(), 0));
    }
    return all;
}

} // namespace RecordViews
