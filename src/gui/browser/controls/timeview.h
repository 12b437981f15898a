#pragma once

#include "axis/timescale.h"
#include "axis/viewhistory.h"
#include "gui/browser/controls/cursorwrap.h"

#include <QFrame>
#include <QTimer>

#include <functional>

namespace Tsb {

/// The strip at the top of the browser that owns the one time scale of all plots: draws ticks, labels and date groups,
/// pans, zooms and rolls, follows the present on request, and shows the time cursor of the plot under the mouse. Plots
/// only ask for changes and hear of them.
class TimeView : public QFrame {
    Q_OBJECT
public:
    /// The clock and the screens; replaced by tests. All set.
    struct Surroundings {
        std::function<RecordTime()> now;
        std::function<QRect(QPoint)> screenAt; ///< geometry of the screen of a global position
    };

    explicit TimeView(QWidget *parent = nullptr);

    void setSurroundings(const Surroundings &surroundings) { m_surroundings = surroundings; }
    const TimeScale &timeScale() const { return m_timeScale; }
    bool isFollowingNow() const { return m_followNow; }
    /// Seconds added to a time when it becomes text.
    void setTimeOffset(std::int64_t seconds);
    std::int64_t timeOffset() const { return m_offsetSeconds; }
    bool hasPreviousView() const { return m_history.hasPrevious(place()); }
    /// The way back ends here: what was looked at has no meaning for other data.
    void forgetViews();
    /// Draws the axis for a painter whose origin is the top left of the contents rectangle.
    void paintAxis(QPainter &painter, const QSize &size) const;

    QSize sizeHint() const override { return {0, m_preferredHeight}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

public Q_SLOTS:
    void setFollowNow(bool on);
    /// Holds ticksPerPixel within its limits; refuses in silence a scale whose window leaves the range of times.
    void setTimeScale(TimeScale newtimescale);
    /// Moves as little as possible; nothing during a drag or when a time is missing. Jumps that follow each other
    /// within a moment are one gesture.
    void scrollIntoView(RecordTime beginTime, RecordTime endTime);
    /// The same for what came in and was not chosen: no step on the way back.
    void runIntoView(RecordTime beginTime, RecordTime endTime);
    void fitIntoView(RecordTime beginTime, RecordTime endTime);
    /// The same once more at another width: no step of its own on the way back.
    void refitIntoView(RecordTime beginTime, RecordTime endTime);
    /// Brings the moment to the middle and keeps the zoom; nothing for a missing time.
    void goToTime(RecordTime time);
    /// Goes back to what was shown before the last finished gesture; nothing during a drag.
    void goToPreviousView();
    /// Zooms about a column of the contents; a multiplier above 1 shows more time. Steps that follow each other within
    /// a moment are one gesture.
    void changeZoom(double multiplier, int midPixel);
    /// A drag from the scale at its start: x pans, y zooms. The gesture lasts until finishDrag().
    void changeZoom(TimeScale startTimescale, QPoint delta);
    void finishDrag();
    /// The column is in a plot's widget coordinates.
    void setTimeCursor(bool visible, int value);

Q_SIGNALS:
    void timeScaleChanged(TimeScale timescale);
    void followNowChanged(bool on);
    void doubleClicked();
    void hasPreviousViewChanged(bool has);

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

private Q_SLOTS:
    void updateFollowNow();
    void panTick();
    void finishGesture();

private:
    enum DragState { Idle, Panning, Rolling };
    enum Steps { ZoomSteps, Jumps };

    ViewHistory::Place place() const { return {m_timeScale, m_followNow}; }
    void beginGesture();
    void beginStep(Steps steps);
    void moveIntoView(RecordTime beginTime, RecordTime endTime);
    void tellHistory();
    void updateFollowNowAt(std::int64_t ticksPerPixel);
    void updateFollowInterval();
    void updateFontMetrics();
    void pan(QMouseEvent *event);
    void panAndZoom(QPoint delta);
    void endDrag();
    void paintCursor(QPainter &painter, const QSize &size) const;
    int contentsWidth() const { return contentsRect().width(); }

    Surroundings m_surroundings;
    int m_lineHeight = 0;
    int m_preferredHeight = 0;
    TimeScale m_timeScale;
    DragState m_dragState = Idle;
    EndlessDrag m_drag{EndlessDrag::SkipsRepeats};
    TimeScale m_dragStartScale;
    std::int64_t m_offsetSeconds = 0;
    bool m_followNow = false;
    QTimer m_followTimer;
    QTimer m_rollTimer;
    double m_rollSpeed = 0;
    double m_rollPosition = 0;
    ViewHistory m_history;
    QTimer m_settleTimer;      ///< runs while further steps may still follow
    Steps m_steps = ZoomSteps; ///< of which kind those are
    bool m_toldHasPrevious = false;
    bool m_cursorVisible = false;
    int m_cursorPixel = 0;
    QBrush m_cursorBrush;
};

/// ticksPerPixel times the factor, truncated and held within 0 .. the greatest zoom; unchanged for a factor that is no
/// positive number.
std::int64_t zoomedTicks(std::int64_t ticksPerPixel, double factor);
/// Milliseconds between two steps of following: one pixel of time, 100 to 1000.
int followInterval(std::int64_t ticksPerPixel);

} // namespace Tsb
