#pragma once

#include "util/numeric.h"

#include <qwt_series_data.h>

namespace RecordViews {

/// The least rectangle around the samples of which both coordinates are finite; one of negative size for none.
QRectF finiteBoundingRect(const QwtSeriesData<QPointF> &data);

/// The points of a curve: grid value i and data value i, as many as both vectors have.
class ResultData : public QwtSeriesData<QPointF> {
public:
    ResultData(const RealVector &grid, const RealVector &values);

    size_t size() const override;
    QPointF sample(size_t i) const override;
    QRectF boundingRect() const override; ///< of the finite points

private:
    RealVector m_grid;
    RealVector m_values;
};

/// The bars of a histogram: data value i over the interval from the smaller to the larger of grid values i and i + 1. A
/// bar without a finite value or place has an invalid interval, which isn't drawn.
class IntervalResultData : public QwtSeriesData<QwtIntervalSample> {
public:
    IntervalResultData(const RealVector &grid, const RealVector &values);

    size_t size() const override;
    QwtIntervalSample sample(size_t i) const override;
    QRectF boundingRect() const override; ///< of the finite bars

private:
    RealVector m_grid;
    RealVector m_values;
};

} // namespace RecordViews
