#pragma once

#include "gui/browser/plots/plot.h"
#include "gui/browser/views/view.h"

#include <QPointer>

namespace Tsb {

/// A view around one plot, which gets all that the view gets.
template<class T>
class SinglePlotView : public View {
public:
    using View::View;

    T *plot() const { return m_plot; }

    void setDatastore(Datastore *datastore) override
    {
        if (m_plot)
            m_plot->setDatastore(datastore);
    }
    void setUpdateTimer(QTimer *timer) override
    {
        if (m_plot)
            m_plot->setUpdateTimer(timer);
    }
    void setMeasuringCursors(const MeasuringCursors *cursors) override
    {
        if (m_plot)
            m_plot->setMeasuringCursors(cursors);
    }
    QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors) override
    {
        return m_plot ? m_plot->measure(cursors) : QVector<CurveFigures>();
    }
    void setTimeScale(TimeScale timescale) override
    {
        if (m_plot)
            m_plot->setTimeScale(timescale);
    }
    void setCurrentRecord(std::shared_ptr<Record> record) override
    {
        if (m_plot)
            m_plot->setCurrentRecord(std::move(record));
    }

protected:
    /// Takes the plot and wires it; its place in the layout is the caller's to give. Called once.
    void setPlot(T *plot)
    {
        m_plot = plot;
        connectPlot(plot);
    }

private:
    QPointer<T> m_plot;
};

} // namespace Tsb
