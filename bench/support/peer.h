#pragma once

#include <qwt_plot_spectrogram.h>
#include <qwt_scale_map.h>

#include <QImage>

#include <functional>

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

/// A matrix of the logarithms, bilinear, one record a column.
class PeerSpectrogram : public Peer {
public:
    /// `value` gives the concentration of a record and a bin.
    PeerSpectrogram(int records, int bins, const std::function<double(int, int)> &value, int width, int height);
    void draw() override;

private:
    QwtPlotSpectrogram m_plot;
};
