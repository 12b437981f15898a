#pragma once

#include "support/peer.h"
#include "timeseries/benchstore.h"

#include <qwt_plot_seriesitem.h>

#include <QVector>

#include <memory>
#include <vector>

/// Curves, one over the other.
class PeerCurves : public Peer {
public:
    void draw() override;

protected:
    using Peer::Peer;

    std::vector<std::unique_ptr<QwtPlotSeriesItem>> m_curves;
};

/// Square symbols of 3 by 3 pixels and the filter of points that share a pixel.
class PeerScatter : public PeerCurves {
public:
    PeerScatter(int width, int height, const std::vector<QVector<double>> &series, double least, double greatest);

private:
    QVector<double> m_index;
    std::vector<QVector<double>> m_values;
};

/// An interval curve for each mode, with a bar for each record.
class PeerStrip : public PeerCurves {
public:
    PeerStrip(BenchStore &data, int width, int height);
};
