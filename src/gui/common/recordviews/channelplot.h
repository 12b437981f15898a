#pragma once

#include "gui/common/recordviews/electrometercorrection.h"
#include "gui/common/recordviews/recordplot.h"

class QwtPlotCurve;

namespace RecordViews {

class NoiseBars;

/// The currents of electrometers over their numbers from 1 on, with a bar about zero that a signal must exceed: twice
/// the deviation to each side, endless where no deviation is known.
class ChannelPlot : public RecordPlot {
    Q_OBJECT
public:
    explicit ChannelPlot(QWidget *parent = nullptr);
    ~ChannelPlot() override;

    /// What the read-out calls the electrometers.
    void setNames(const QStringList &names) { m_names = names; }
    /// Drawn by the next replot(), as is all that follows.
    void showValues(const ElectrometerValues &values);
    void hideValues();

protected:
    QString valuesText() const override;
    QVector<PlotReadout::Series> readoutSeries() const override;
    void changeEvent(QEvent *event) override;

private:
    void takeItemColors();

    // Owned by the plot's dictionary of items.
    NoiseBars *m_intervals;
    QwtPlotCurve *m_rawCurve;
    QwtPlotCurve *m_currentsCurve;
    QStringList m_names;
};

} // namespace RecordViews
