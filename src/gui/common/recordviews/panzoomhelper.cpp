#include "gui/common/recordviews/panzoomhelper.h"

#include <QMouseEvent>
#include <QWheelEvent>

#include <qwt_plot.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_transform.h>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr double dragZoom = 0.995; ///< for each pixel
constexpr double wheelZoom = 0.9;  ///< for each notch of 15°
constexpr double leastSpan = 1e-12;
constexpr double leastOfLog = 1e-100;
constexpr double greatestOfLog = 1e100;

bool isLogarithmic(const QwtScaleMap &map)
{
    return dynamic_cast<const QwtLogTransform *>(map.transformation()) != nullptr;
}

} // namespace

PanZoomHelper::PanZoomHelper(QwtPlot *plot, int axis, QObject *parent)
    : QObject(parent ? parent : plot), m_plot(plot), m_axis(axis), m_widget(plot->axisWidget(axis))
{
    m_widget->setCursor(Qt::OpenHandCursor);
    // The right button scales by the contents; it must not open a menu as well.
    m_widget->setContextMenuPolicy(Qt::PreventContextMenu);
    m_widget->installEventFilter(this);
}

bool PanZoomHelper::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_widget)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(static_cast<const QMouseEvent &>(*event));
        break;
    case QEvent::MouseMove:
        drag(static_cast<const QMouseEvent &>(*event));
        break;
    case QEvent::MouseButtonRelease:
        release(static_cast<const QMouseEvent &>(*event));
        break;
    case QEvent::MouseButtonDblClick:
        autoscale();
        break;
    case QEvent::Wheel:
        turnWheel(static_cast<const QWheelEvent &>(*event));
        break;
    default:
        break;
    }
    return false;
}

/// The map of the axis widget's own pixels: that of the canvas counts from elsewhere.
QwtScaleMap PanZoomHelper::presentMap() const
{
    return m_plot->axisScaleDraw(m_axis)->scaleMap();
}

QPointF PanZoomHelper::acrossAndAlong(const QPointF &way) const
{
    const bool isVertical = m_axis == QwtPlot::yLeft || m_axis == QwtPlot::yRight;
    return isVertical ? way : QPointF(-way.y(), way.x());
}

void PanZoomHelper::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    m_isDragging = true;
    m_start = m_widget->mapTo(m_plot, QPoint()) + event.localPos();
    m_center = acrossAndAlong(event.localPos()).y();
    m_startMap = presentMap();
    m_widget->setCursor(Qt::ClosedHandCursor);
}

void PanZoomHelper::drag(const QMouseEvent &event)
{
    if (!m_isDragging || !(event.buttons() & Qt::LeftButton))
        return;
    // In the plot: the widget itself moves when the texts at its ticks grow.
    const QPointF moved = acrossAndAlong(m_widget->mapTo(m_plot, QPoint()) + event.localPos() - m_start);
    show(m_startMap, m_center, moved.y(), std::pow(dragZoom, moved.x()));
}

void PanZoomHelper::release(const QMouseEvent &event)
{
    if (event.button() == Qt::RightButton)
        autoscale();
    if (event.button() != Qt::LeftButton)
        return;
    m_isDragging = false;
    m_widget->setCursor(Qt::OpenHandCursor);
}

void PanZoomHelper::turnWheel(const QWheelEvent &event)
{
    const double notches = event.angleDelta().y() * 0.125 / 15;
    if (notches != 0)
        show(presentMap(), acrossAndAlong(event.position()).y(), 0, std::pow(wheelZoom, notches));
}

void PanZoomHelper::zoom(double factor)
{
    const QwtScaleMap map = presentMap();
    show(map, (map.p1() + map.p2()) / 2, 0, factor);
}

void PanZoomHelper::pan(double part)
{
    const QwtScaleMap map = presentMap();
    show(map, 0, (map.p1() - map.p2()) * part, 1);
}

void PanZoomHelper::autoscale()
{
    if (m_isAuto) {
        Q_EMIT setAutoScaleEnabled(true);
        return;
    }
    m_plot->setAxisAutoScale(m_axis, true);
    m_plot->replot();
}

void PanZoomHelper::show(const QwtScaleMap &map, double center, double shift, double factor)
{
    const std::optional<QwtInterval> ends = movedEnds(map, center, shift, factor);
    if (!ends)
        return;
    if (m_isAuto)
        Q_EMIT setAutoScaleEnabled(false);
    m_plot->setAxisScale(m_axis, ends->minValue(), ends->maxValue());
    m_plot->replot();
}

std::optional<QwtInterval> PanZoomHelper::movedEnds(const QwtScaleMap &map, double center, double shift, double factor)
{
    const double first = map.invTransform((map.p1() - center - shift) * factor + center);
    const double last = map.invTransform((map.p2() - center - shift) * factor + center);
    const double span = std::abs(last - first);
    if (!std::isfinite(first) || !std::isfinite(last) || !std::isfinite(span))
        return {};
    if (span < leastSpan * std::max(std::abs(first), std::abs(last)) || span == 0)
        return {};
    if (isLogarithmic(map) && (std::min(first, last) < leastOfLog || std::max(first, last) > greatestOfLog))
        return {};
    return QwtInterval(first, last);
}

} // namespace RecordViews
