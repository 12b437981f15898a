#pragma once

#include "timeseries/benchstore.h"

#include <qwt_plot_curve.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_scale_map.h>

#include <QImage>
#include <QVector>

#include <memory>
#include <vector>

/// The same pictures by Qwt, each drawn by its plot item straight into an image: no axes, no canvas.
class Peer {
public:
    virtual ~Peer() = default;
    /// Shows the records from `first` to `last`, counted from the start.
    void setRecords(double first, double last) { m_x.setScaleInterval(first, last); }
    virtual void draw() = 0;
    QImage &image() { return m_image; }

protected:
    Peer(int width, int height, double records);
    QRectF area() const { return QRectF(0, 0, m_image.width(), m_image.height()); }

    QImage m_image;
    QwtScaleMap m_x, m_y;
};

/// Square symbols of 3 by 3 pixels and the filter of points that share a pixel.
class PeerScatter : public Peer {
public:
    PeerScatter(int width, int height, const std::vector<QVector<double>> &series, double least, double greatest);
    void draw() override;

private:
    QVector<double> m_index;
    std::vector<QVector<double>> m_values;
    std::vector<std::unique_ptr<QwtPlotCurve>> m_curves;
};

/// An interval curve for each mode, with a bar for each record.
class PeerStrip : public Peer {
public:
    PeerStrip(BenchStore &data, int width, int height);
    void draw() override;

private:
    std::vector<std::unique_ptr<QwtPlotIntervalCurve>> m_curves;
};

/// A matrix of the logarithms, bilinear.
class PeerSpectrogram : public Peer {
public:
    PeerSpectrogram(BenchStore &data, int info, int width, int height);
    void draw() override;

private:
    QwtPlotSpectrogram m_plot;
};
