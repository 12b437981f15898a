#include "support/peer.h"

#include <qwt_color_map.h>
#include <qwt_matrix_raster_data.h>

#include <QPainter>
#include <QVector>

#include <cmath>

Peer::Peer(int width, int height, double records) : m_image(width, height, QImage::Format_ARGB32_Premultiplied)
{
    m_image.fill(Qt::white);
    m_x.setScaleInterval(0, records);
    m_x.setPaintInterval(0, width);
    m_y.setPaintInterval(height, 0);
}

PeerSpectrogram::PeerSpectrogram(int records, int bins, const std::function<double(int, int)> &value, int width,
                                 int height)
    : Peer(width, height, records)
{
    QVector<double> matrix(records * bins);
    for (int k = 0; k < bins; ++k)
        for (int i = 0; i < records; ++i)
            matrix[k * records + i] = std::log10(value(i, k));
    auto *const raster = new QwtMatrixRasterData;
    raster->setValueMatrix(matrix, records);
    raster->setInterval(Qt::XAxis, QwtInterval(0, records));
    raster->setInterval(Qt::YAxis, QwtInterval(0, bins));
    raster->setInterval(Qt::ZAxis, QwtInterval(1, 3));
    raster->setResampleMode(QwtMatrixRasterData::BilinearInterpolation);
    m_plot.setData(raster);
    // jet as Qwt interpolates it; its index table isn't used in the RGB format
    auto *const colors = new QwtLinearColorMap(QColor(0, 0, 127), QColor(127, 0, 0));
    colors->addColorStop(0.11, QColor(0, 0, 255));
    colors->addColorStop(0.375, QColor(0, 255, 255));
    colors->addColorStop(0.64, QColor(255, 255, 0));
    colors->addColorStop(0.9, QColor(255, 0, 0));
    m_plot.setColorMap(colors);
    m_plot.setRenderThreadCount(1);
    m_y.setScaleInterval(0, bins);
}

void PeerSpectrogram::draw()
{
    QPainter painter(&m_image);
    painter.fillRect(area(), Qt::white);
    m_plot.draw(&painter, m_x, m_y, area());
}
