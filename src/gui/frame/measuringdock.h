#pragma once

#include <QDockWidget>
#include <QTimer>

class MeasuringModel;
class QLabel;
class QStackedWidget;
class QTableView;
class SeenContents;

namespace Tsb {
class TimeSeriesBrowser;
}

/// Tells what the browser's curves have at the measuring cursors and between them, as a table that can be copied. It is
/// worked out only while it is seen, once for all that changes in a moment.
class MeasuringDock : public QDockWidget {
    Q_OBJECT
public:
    /// The browser must outlive it.
    MeasuringDock(Tsb::TimeSeriesBrowser *browser, QWidget *parent);

    QTableView *table() const { return m_table; }

public Q_SLOTS:
    /// The selected rows, or all, with their titles.
    void copy();

private:
    void makeTable();
    void cursorsChanged();
    void refresh();

    Tsb::TimeSeriesBrowser *m_browser;
    MeasuringModel *m_model;
    QTableView *m_table;
    QLabel *m_hint; ///< in place of the table while there is no cursor
    QStackedWidget *m_pages;
    SeenContents *m_contents;
    QTimer m_timer;
    bool m_hadCursors = false;
    int m_fittedFor = 0; ///< the number of cursors that the columns are wide enough for
};
