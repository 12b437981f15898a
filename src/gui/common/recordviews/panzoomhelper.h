#pragma once

#include <QObject>
#include <QPointF>

#include <qwt_interval.h>
#include <qwt_scale_map.h>

#include <optional>

class QMouseEvent;
class QWheelEvent;
class QwtPlot;
class QwtScaleWidget;

namespace RecordViews {

/// Panning and zooming of one axis of a plot by mouse, on the widget that shows the axis: a drag along it pans, a drag
/// across it and the wheel zoom about the pointer, a double click or a right click scales the axis by its contents.
/// Events are looked at and never taken. Belongs to the plot unless a parent is given.
class PanZoomHelper : public QObject {
    Q_OBJECT
public:
    /// `axis` is one of QwtPlot::Axis.
    PanZoomHelper(QwtPlot *plot, int axis, QObject *parent = nullptr);

    /// In auto mode the plot decides when the axis is scaled by its contents, and is told of wishes by
    /// setAutoScaleEnabled; otherwise, and at first, the helper switches Qwt's autoscale itself.
    void setAutoMode(bool on) { m_isAuto = on; }

    /// The same from keys: by a factor about the middle of the axis, below 1 to see less of it; and by a part of its
    /// length, above 0 to see greater values.
    void zoom(double factor);
    void pan(double part);

    /// The scale ends that show the pixels (p - center - shift) * factor + center of the map's two pixel ends p. None
    /// where an end isn't finite, where the span is below 1e-12 of its ends and rounding would show as steps, or where
    /// a logarithmic axis would leave 1e-100 to 1e100.
    static std::optional<QwtInterval> movedEnds(const QwtScaleMap &map, double center, double shift, double factor);

Q_SIGNALS:
    /// In auto mode: false before each zoom or pan, true when the user wants the axis to be scaled by its contents.
    void setAutoScaleEnabled(bool on);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void press(const QMouseEvent &event);
    void drag(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void turnWheel(const QWheelEvent &event);
    void autoscale();
    void show(const QwtScaleMap &map, double center, double shift, double factor);
    QPointF acrossAndAlong(const QPointF &way) const;
    QwtScaleMap presentMap() const;

    QwtPlot *m_plot;
    int m_axis;
    QwtScaleWidget *m_widget; ///< shows the axis
    bool m_isAuto = false;
    bool m_isDragging = false;
    // Where the drag started: in the plot, along the axis, and the scale of then.
    QPointF m_start;
    double m_center = 0;
    QwtScaleMap m_startMap;
};

} // namespace RecordViews
