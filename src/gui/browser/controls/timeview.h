#pragma once

#include "axis/measuringcursors.h"
#include "axis/timenavigator.h"
#include "gui/browser/controls/cursorwrap.h"

#include <QFrame>
#include <QPointer>

#include <optional>
#include <utility>

namespace Tsb {

/// The strip at the top of the browser: draws ticks, labels and date groups of the one time scale of all plots, turns
/// mouse and wheel into gestures of its navigator, and shows the time cursor of the plot under the mouse. Plots only
/// ask for changes and hear of them. Measuring cursors have handles here, which the left button drags; with Shift it
/// marks a span of time.
class TimeView : public QFrame {
    Q_OBJECT
public:
    /// The clock and the screens; a test gives others. All set.
    struct Surroundings {
        TimeNavigator::Clock now;
        std::function<QRect(QPoint)> screenAt; ///< geometry of the screen of a global position
    };
    static Surroundings realSurroundings();

    explicit TimeView(QWidget *parent = nullptr, const Surroundings &surroundings = realSurroundings());

    /// The owner of the scale and of the way back; lives as long as the view.
    TimeNavigator *navigator() { return &m_navigator; }
    const TimeNavigator *navigator() const { return &m_navigator; }
    const TimeScale &timeScale() const { return m_navigator.timeScale(); }
    /// Seconds added to a time when it becomes text.
    void setTimeOffset(std::int64_t seconds);
    std::int64_t timeOffset() const { return m_offsetSeconds; }
    /// The cursors that handles show and drag; null for none. They may die before the view.
    void setMeasuringCursors(MeasuringCursors *cursors);
    /// Draws the axis for a painter whose origin is the top left of the contents rectangle.
    void paintAxis(QPainter &painter, const QSize &size) const;

    QSize sizeHint() const override { return {0, m_preferredHeight}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

public Q_SLOTS:
    // The navigator's.
    void setFollowNow(bool on) { m_navigator.setFollowNow(on); }
    void setTimeScale(TimeScale newtimescale) { m_navigator.setTimeScale(newtimescale); }
    void scrollIntoView(RecordTime beginTime, RecordTime endTime) { m_navigator.scrollIntoView(beginTime, endTime); }
    void fitIntoView(RecordTime beginTime, RecordTime endTime) { m_navigator.fitIntoView(beginTime, endTime); }
    void changeZoom(double multiplier, int midPixel) { m_navigator.changeZoom(multiplier, midPixel); }
    void changeZoom(TimeScale startTimescale, QPoint delta) { m_navigator.changeZoom(startTimescale, delta); }
    /// The column is in a plot's widget coordinates.
    void setTimeCursor(bool visible, int value);
    /// The mark of the last span goes.
    void clearMarkedSpan();

Q_SIGNALS:
    void timeScaleChanged(TimeScale timescale);
    void followNowChanged(bool on);
    void doubleClicked();
    /// A drag that began at one of the moments has ended at the other, with the pointer there on the screen. The span
    /// stays marked.
    void spanMarked(RecordTime begin, RecordTime end, const QPoint &globalPosition);
    /// The time cursor of a span's moving end; the column is that of setTimeCursor().
    void timeCursorChange(bool visible, int value);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void updateFontMetrics();
    void endDrag();
    bool beginMeasuring(QMouseEvent *event);
    void measureAt(int widgetX);
    void endSpan(const QPoint &globalPosition);
    void dropSpan();
    int handleAt(const QPoint &position) const;
    RecordTime timeInSightAt(int column) const;
    void paintMarkedSpan(QPainter &painter, const QSize &size) const;
    void paintTimeAt(QPainter &painter, const QSize &size, int x) const;
    int columnOf(double widgetX) const;

    const std::function<QRect(QPoint)> m_screenAt;
    TimeNavigator m_navigator;
    int m_lineHeight = 0;
    int m_preferredHeight = 0;
    EndlessDrag m_drag{EndlessDrag::SkipsRepeats};
    Qt::MouseButton m_dragButton = Qt::NoButton;
    std::int64_t m_offsetSeconds = 0;
    bool m_cursorVisible = false;
    int m_cursorPixel = 0;
    QBrush m_cursorBrush;
    QPointer<MeasuringCursors> m_measuringCursors;
    int m_heldCursor = -1;                                   ///< that is being dragged
    int m_holdOffset = 0;                                    ///< columns from the pointer to it
    std::optional<std::pair<RecordTime, RecordTime>> m_span; ///< from where it was begun to where it ends
    bool m_isMarking = false;
};

} // namespace Tsb
