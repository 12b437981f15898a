#pragma once

#include "axis/timescale.h"
#include "axis/viewhistory.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <functional>
#include <optional>

namespace Tsb {

/// The owner of the one time scale that all plots share, without a widget: it pans, zooms and rolls, brings records
/// into sight, follows the present, and keeps the way back. Columns are those of the axis' contents. Lives in a thread
/// with an event loop.
class TimeNavigator : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<RecordTime()>;
    using Width = std::function<int()>;

    /// Both must be set. The width is that of the window in columns; it is asked for whenever it is needed, because a
    /// hidden widget hears of its size late. The scale begins at the present, with a second a column.
    TimeNavigator(Clock clock, Width width, QObject *parent = nullptr);

    const TimeScale &timeScale() const { return m_timeScale; }
    /// The moment in the middle of the window.
    RecordTime middle() const { return m_timeScale.tickAt(m_width() / 2); }
    /// Whether the scale is that of fitWhole().
    bool isWhole() const { return m_whole && m_whole->fitted == m_timeScale && !m_followNow; }
    bool isFollowingNow() const { return m_followNow; }
    bool hasPreviousView() const { return m_history.hasPrevious(place()); }
    /// Ends the way back here: the former places have no meaning for other data.
    void forgetViews();

    /// A drag of the axis begins at a column and lasts until endDrag(). Only one at a time: nothing during another.
    void beginPan(int column);
    void beginRoll(int column);
    bool isDragging() const { return m_dragState != Idle; }
    /// How far the pointer has come since beginPan(): x pans, and y zooms beyond the dead band on both sides of 0.
    void pan(QPoint travel, int deadBand);
    /// How far the pointer is from the place of beginRoll(); the speed grows with the square.
    void roll(int distance);
    void endDrag();

public Q_SLOTS:
    void setFollowNow(bool on);
    /// Holds ticksPerPixel within its limits; refuses in silence a scale whose window leaves the range of times.
    void setTimeScale(TimeScale newtimescale);
    /// Moves as little as possible; nothing during a drag of the axis or when a time is missing. Jumps that follow each
    /// other within a moment are one gesture.
    void scrollIntoView(RecordTime beginTime, RecordTime endTime);
    /// As scrollIntoView(), for a record that came in and was not chosen; it adds no step to the way back.
    void runIntoView(RecordTime beginTime, RecordTime endTime);
    void fitIntoView(RecordTime beginTime, RecordTime endTime);
    /// The same for all of the data. While they are in sight as a whole they stay so: another width has them fitted
    /// again, until the scale is changed by anything else.
    void fitWhole(RecordTime beginTime, RecordTime endTime);
    /// Brings the moment to the middle and keeps the zoom; nothing for a missing time.
    void goToTime(RecordTime time);
    /// Goes back to the place before the last finished gesture; nothing during a drag.
    void goToPreviousView();
    /// Zooms about a column; a multiplier above 1 shows more time. Steps that follow each other within a moment are one
    /// gesture.
    void changeZoom(double multiplier, int midPixel);
    /// A drag, of the axis or of a plot, from the scale at its start: x pans, y zooms. The gesture lasts until
    /// finishDrag().
    void changeZoom(TimeScale startTimescale, QPoint delta);
    void finishDrag();
    /// To be called after a change of the width: what follows the present goes on with it, and the whole is fitted.
    void adaptToWidth();

Q_SIGNALS:
    void timeScaleChanged(TimeScale timescale);
    void followNowChanged(bool on);
    void hasPreviousViewChanged(bool has);

private:
    enum DragState { Idle, Panning, Rolling };
    enum Steps { ZoomSteps, Jumps };

    struct Whole {
        RecordTime begin, end;
        TimeScale fitted;
    };

    void fit(RecordTime beginTime, RecordTime endTime);
    ViewHistory::Place place() const { return {m_timeScale, m_followNow}; }
    bool beginDrag(DragState state, int column);
    void beginGesture();
    void beginStep(Steps steps);
    void finishGesture();
    bool hasStepsToCome() const { return m_settleTimer.isActive(); }
    void tellHistory();
    void moveIntoView(RecordTime beginTime, RecordTime endTime);
    void updateFollowNow();
    void updateFollowNowAt(std::int64_t ticksPerPixel);
    void panTick();

    const Clock m_clock;
    const Width m_width;
    TimeScale m_timeScale;
    DragState m_dragState = Idle;
    TimeScale m_dragStartScale;
    QTimer m_rollTimer;
    double m_rollSpeed = 0;
    double m_rollPosition = 0;
    bool m_followNow = false;
    QTimer m_followTimer;
    std::optional<Whole> m_whole;
    ViewHistory m_history;
    QTimer m_settleTimer;      ///< runs while further steps may still follow
    Steps m_steps = ZoomSteps; ///< the kind of those
    bool m_toldHasPrevious = false;
};

/// Milliseconds between two steps of following: one pixel of time, 100 to 1000.
int followInterval(std::int64_t ticksPerPixel);

} // namespace Tsb
