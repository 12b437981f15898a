#pragma once

#include "axis/measuringcursors.h"

#include <QList>
#include <QObject>

#include <array>
#include <functional>

class QAction;
class QMenu;
class QPoint;
class QWidget;

namespace Tsb {

class TimeView;

/// The commands of measuring: set a cursor, drop both, zoom to the span between them, export it; and the menu of a span
/// that was marked on the time axis. Keys work in the widget and its children; those that set a cursor in its whole
/// window while the pointer is over it.
class MeasuringCommands : public QObject {
    Q_OBJECT
public:
    /// `place` tells where a key sets a cursor. All outlive the commands, which the widget owns.
    MeasuringCommands(MeasuringCursors *cursors, TimeView *axis, const std::function<RecordTime(int which)> &place,
                      QWidget *widget);

    const QList<QAction *> &actions() const { return m_actions; }
    void setEnabled(bool on);

Q_SIGNALS:
    /// The user wants the records between these moments as a table.
    void exportRequested(RecordTime begin, RecordTime end);

private:
    template<typename Slot>
    QAction *addAction(const QString &text, int key, Slot slot);
    bool eventFilter(QObject *watched, QEvent *event) override;
    void takeFocus();
    void updateActions();
    void zoomTo(const std::pair<RecordTime, RecordTime> &span);
    void showSpanMenu(RecordTime begin, RecordTime end, const QPoint &at);

    QWidget *m_widget;
    MeasuringCursors *m_cursors;
    TimeView *m_axis;
    std::array<QAction *, MeasuringCursors::count> m_set;
    QAction *m_drop;
    QAction *m_zoom;
    QAction *m_export;
    QList<QAction *> m_actions;
    QMenu *m_spanMenu;
    std::pair<RecordTime, RecordTime> m_span; ///< that the menu is for
    bool m_enabled = true;
};

} // namespace Tsb
