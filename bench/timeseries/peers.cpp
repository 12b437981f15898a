#include "timeseries/peers.h"

#include <qwt_color_map.h>
#include <qwt_interval_symbol.h>
#include <qwt_matrix_raster_data.h>
#include <qwt_symbol.h>

#include <QPainter>

#include <cmath>

Peer::Peer(int width, int height, double records) : m_image(width, height, QImage::Format_ARGB32_Premultiplied)
{
    m_image.fill(Qt::white);
    m_x.setScaleInterval(0, records);
    m_x.setPaintInterval(0, width);
    m_y.setPaintInterval(height, 0);
}

PeerScatter::PeerScatter(int width, int height, const std::vector<QVector<double>> &series, double least,
                         double greatest)
    : Peer(width, height, series[0].size()), m_index(series[0].size()), m_values(series)
{
    for (int i = 0; i < m_index.size(); ++i)
        m_index[i] = i + 0.5;
    m_y.setScaleInterval(least, greatest);
    for (const QVector<double> &values : m_values) {
        auto curve = std::make_unique<QwtPlotCurve>();
        curve->setStyle(QwtPlotCurve::NoCurve);
        curve->setSymbol(new QwtSymbol(QwtSymbol::Rect, Qt::NoBrush, QPen(Qt::blue, 0), QSize(3, 3)));
        curve->setPaintAttribute(QwtPlotCurve::FilterPoints);
        curve->setRawSamples(m_index.constData(), values.constData(), values.size());
        m_curves.push_back(std::move(curve));
    }
}

void PeerScatter::draw()
{
    QPainter painter(&m_image);
    painter.fillRect(area(), Qt::white);
    for (const auto &curve : m_curves)
        curve->draw(&painter, m_x, m_y, area());
}

PeerStrip::PeerStrip(BenchStore &data, int width, int height) : Peer(width, height, data.count())
{
    m_y.setScaleInterval(0, 1);
    for (int mode = 0; mode < BenchStore::modes; ++mode) {
        QVector<QwtIntervalSample> samples;
        for (int i = mode; i < data.count(); i += BenchStore::modes)
            samples.append(QwtIntervalSample(i + 0.5, 0.1, 0.9));
        auto curve = std::make_unique<QwtPlotIntervalCurve>();
        curve->setStyle(QwtPlotIntervalCurve::NoCurve);
        auto *const bar = new QwtIntervalSymbol(QwtIntervalSymbol::Bar);
        bar->setWidth(1);
        bar->setPen(QPen(data.uiInfo()->opmodeColor(mode), 0));
        curve->setSymbol(bar);
        curve->setSamples(samples);
        m_curves.push_back(std::move(curve));
    }
}

void PeerStrip::draw()
{
    QPainter painter(&m_image);
    painter.fillRect(area(), Qt::white);
    for (const auto &curve : m_curves)
        curve->draw(&painter, m_x, m_y, area());
}

PeerSpectrogram::PeerSpectrogram(BenchStore &data, int info, int width, int height) : Peer(width, height, data.count())
{
    constexpr int bins = BenchStore::bins;
    const int count = data.count();
    QVector<double> matrix(count * bins);
    for (int k = 0; k < bins; ++k)
        for (int i = 0; i < count; ++i)
            matrix[k * count + i] = std::log10(BenchStore::concentration(i, info, k));
    auto *const raster = new QwtMatrixRasterData;
    raster->setValueMatrix(matrix, count);
    raster->setInterval(Qt::XAxis, QwtInterval(0, count));
    raster->setInterval(Qt::YAxis, QwtInterval(0, bins));
    raster->setInterval(Qt::ZAxis, QwtInterval(1, 3));
    raster->setResampleMode(QwtMatrixRasterData::BilinearInterpolation);
    m_plot.setData(raster);
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
