#pragma once

#include "gui/browser/plots/plot.h"
#include "gui/browser/views/view.h"

#include <QList>
#include <QPointer>
#include <QTimer>

namespace Tsb {

/// A view around a list of plots, each with a scale of type S at its left. It hands store, timer, time scale and record
/// to all plots, and to a new one at once.
template<class T, class S = QWidget>
class MultiPlotView : public View {
public:
    struct Row {
        QPointer<S> scale;
        QPointer<T> plot;
    };

    using View::View;

    const QList<Row> &rows() const { return m_rows; }

    void setDatastore(Datastore *datastore) override
    {
        m_datastore = datastore;
        forEachPlot([datastore](T &plot) { plot.setDatastore(datastore); });
    }
    void setUpdateTimer(QTimer *timer) override
    {
        m_updateTimer = timer;
        forEachPlot([timer](T &plot) { plot.setUpdateTimer(timer); });
    }
    void setMeasuringCursors(const MeasuringCursors *cursors) override
    {
        m_cursors = cursors;
        forEachPlot([cursors](T &plot) { plot.setMeasuringCursors(cursors); });
    }
    QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors) override
    {
        QVector<CurveFigures> curves;
        forEachPlot([&](T &plot) { curves += plot.measure(cursors); });
        return curves;
    }
    void setTimeScale(TimeScale timescale) override
    {
        m_timeScale = timescale;
        forEachPlot([&timescale](T &plot) { plot.setTimeScale(timescale); });
    }
    void setCurrentRecord(std::shared_ptr<Record> record) override
    {
        m_currentRecord = record;
        forEachPlot([&record](T &plot) { plot.setCurrentRecord(record); });
    }

protected:
    Datastore *datastore() const { return m_datastore; }
    const TimeScale &timeScale() const { return m_timeScale; }
    const std::shared_ptr<Record> &currentRecord() const { return m_currentRecord; }

    /// Appends a row, wires the plot and gives it the present state; the place in the layout is the caller's to give.
    void addRow(S *scale, T *plot)
    {
        m_rows.append({scale, plot});
        connectPlot(plot);
        if (m_updateTimer)
            plot->setUpdateTimer(m_updateTimer);
        plot->setMeasuringCursors(m_cursors);
        plot->setTimeScale(m_timeScale);
        plot->setDatastore(m_datastore);
        plot->setCurrentRecord(m_currentRecord);
    }
    /// Forgets the last row; its widgets are the caller's to delete.
    Row takeLastRow() { return m_rows.takeLast(); }

    template<class Function>
    void forEachPlot(Function function)
    {
        for (const Row &row : m_rows) {
            if (row.plot)
                function(*row.plot);
        }
    }

private:
    QList<Row> m_rows;
    TimeScale m_timeScale;
    QPointer<Datastore> m_datastore;
    QPointer<QTimer> m_updateTimer;
    QPointer<const MeasuringCursors> m_cursors;
    std::shared_ptr<Record> m_currentRecord;
};

} // namespace Tsb
