#include "timeseries/peers.h"

#include <qwt_interval_symbol.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_symbol.h>

#include <QPainter>

void PeerCurves::draw()
{
    QPainter painter(&m_image);
    painter.fillRect(area(), Qt::white);
    for (const auto &curve : m_curves)
        curve->draw(&painter, m_x, m_y, area());
}

PeerScatter::PeerScatter(int width, int height, const std::vector<QVector<double>> &series, double least,
                         double greatest)
    : PeerCurves(width, height, series[0].size()), m_index(series[0].size()), m_values(series)
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

PeerStrip::PeerStrip(BenchStore &data, int width, int height) : PeerCurves(width, height, data.count())
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
