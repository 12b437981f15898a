#pragma once

#include "gui/browser/plots/plot.h"
#include "timeseries/benchstore.h"

#include <QPainter>

/// A plot without a window: as large as its image, and drawn into any image on request.
template<class P>
class BarePlot : public P {
public:
    BarePlot(BenchStore &source, int columns, int rows)
    {
        this->setFrameStyle(QFrame::NoFrame);
        this->resize(columns, rows);
        this->setDatastore(&source.store());
        this->setTimeScale(source.wholeRange(columns));
        m_target = QImage(columns, rows, QImage::Format_ARGB32_Premultiplied);
        m_target.fill(Qt::white);
    }
    /// Draws columns from `first` to the right edge, or all.
    void redraw(int first = 0)
    {
        QPainter painter(&m_target);
        this->drawRange(painter, first, m_target.width());
    }
    QImage &target() { return m_target; }

private:
    QImage m_target;
};
