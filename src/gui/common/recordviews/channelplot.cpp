#include "gui/common/recordviews/channelplot.h"

#include "gui/common/recordviews/electrometertext.h"
#include "gui/common/recordviews/noisebars.h"
#include "gui/common/spectrumcolors.h"

#include <QEvent>
#include <QPen>

#include <qwt_interval_symbol.h>
#include <qwt_legend.h>
#include <qwt_plot_curve.h>
#include <qwt_scale_engine.h>
#include <qwt_symbol.h>

#include <cmath>
#include <limits>

namespace RecordViews {

namespace {

constexpr int currentSize = 8;
constexpr int rawSize = 5;
constexpr int barWidth = 6;
constexpr int legendBarHeight = 12;
constexpr double barReach = 2; ///< deviations to each side
constexpr double halfChannel = 0.5;
constexpr double greatestDrawn = 1e100; ///< beyond it the toolkit's arithmetic of axes overflows

// Places in the general palette.
constexpr int skyBlue = 4;
constexpr int lightSkyBlue = 11;
constexpr int orange = 9;

bool isDrawable(double value)
{
    return std::abs(value) <= greatestDrawn;
}

QVector<QPointF> pointsOf(const RealVector &values)
{
    QVector<QPointF> points;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (isDrawable(values[i]))
            points << QPointF(double(i) + 1, values[i]);
    }
    return points;
}

QVector<QwtIntervalSample> barsOf(const RealVector &variances)
{
    QVector<QwtIntervalSample> bars;
    for (std::size_t i = 0; i < variances.size(); ++i) {
        const double reach = barReach * deviationOf(variances[i]);
        const double end = isDrawable(reach) ? reach : std::numeric_limits<double>::infinity();
        bars << QwtIntervalSample(double(i) + 1, -end, end);
    }
    return bars;
}

QwtPlotCurve *makePoints(const QString &name, QwtPlot *plot)
{
    auto *const curve = new QwtPlotCurve(name);
    curve->setStyle(QwtPlotCurve::NoCurve);
    curve->setRenderHint(QwtPlotItem::RenderAntialiased);
    curve->setLegendAttribute(QwtPlotCurve::LegendShowSymbol);
    curve->setVisible(false);
    curve->attach(plot);
    return curve;
}

void showPoints(QwtPlotCurve *curve, const RealVector &values)
{
    const QVector<QPointF> points = pointsOf(values);
    curve->setSamples(points);
    curve->setVisible(!points.isEmpty());
}

QVector<QPointF> samplesOf(const QwtPlotCurve &curve)
{
    QVector<QPointF> samples;
    for (int i = 0; i < int(curve.dataSize()); ++i)
        samples << curve.sample(i);
    return samples;
}

} // namespace

ChannelPlot::ChannelPlot(QWidget *parent)
    : RecordPlot(parent), m_intervals(new NoiseBars), m_rawCurve(makePoints(tr("Raw current"), this)),
      m_currentsCurve(makePoints(tr("Current"), this))
{
    m_intervals->setLegendIconSize(QSize(barWidth, legendBarHeight));
    m_intervals->setVisible(false);
    m_intervals->attach(this);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding); // may be lower than its hint
    m_intervals->setTitle(tr("Level of noise"));
    m_intervals->setZ(m_currentsCurve->z() - 1); // over the grid and below the points
    axisScaleEngine(xBottom)->setMargins(halfChannel, halfChannel);
    insertLegend(new QwtLegend, TopLegend);
    setPlainAxisTitle(xBottom, tr("Channel number"));
    readout()->setUnits({}, QStringLiteral("fA"));
    takeItemColors();
}

ChannelPlot::~ChannelPlot() = default;

void ChannelPlot::showValues(const ElectrometerValues &values)
{
    m_intervals->setSamples(barsOf(values.variances));
    m_intervals->setVisible(true);
    showPoints(m_currentsCurve, values.currents);
    showPoints(m_rawCurve, values.rawCurrents);
}

void ChannelPlot::hideValues()
{
    m_intervals->setVisible(false);
    m_currentsCurve->setVisible(false);
    m_rawCurve->setVisible(false);
}

QString ChannelPlot::valuesText() const
{
    QStringList texts;
    for (const PlotReadout::Series &series : readoutSeries()) {
        QStringList values;
        for (int i = 0; i < series.points.size(); ++i)
            values << QStringLiteral("%1: %2").arg(series.pointNames[i], QString::number(series.points[i].y(), 'g', 4));
        texts << tr("%1 in fA: %2").arg(series.name, values.join(QStringLiteral(", ")));
    }
    return texts.isEmpty() ? tr("no values") : texts.join(QStringLiteral("; "));
}

QVector<PlotReadout::Series> ChannelPlot::readoutSeries() const
{
    QVector<PlotReadout::Series> all;
    for (const QwtPlotCurve *curve : {m_currentsCurve, m_rawCurve}) {
        if (!curve->isVisible())
            continue;
        PlotReadout::Series series{curve->title().text(), curve->symbol()->brush().color(), samplesOf(*curve), {}};
        for (const QPointF &point : qAsConst(series.points)) {
            const int number = qRound(point.x());
            series.pointNames << QStringLiteral("%1 (%2)").arg(QString::number(number), m_names.value(number - 1));
        }
        all << series;
    }
    return all;
}

void ChannelPlot::changeEvent(QEvent *event)
{
    RecordPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        takeItemColors();
        replot();
    }
}

void ChannelPlot::takeItemColors()
{
    const QColor ink = palette().color(QPalette::Text);
    const bool isDark = ink.lightness() > palette().color(QPalette::Base).lightness();
    const QColor current = SpectrumColors::generalPalette().at(isDark ? lightSkyBlue : skyBlue);
    const QColor raw = SpectrumColors::generalPalette().at(orange);
    QColor noise = ink;
    noise.setAlphaF(0.5);
    m_currentsCurve->setSymbol(
        new QwtSymbol(QwtSymbol::Diamond, current, QPen(current.darker()), QSize(currentSize, currentSize)));
    m_rawCurve->setSymbol(new QwtSymbol(QwtSymbol::Diamond, raw, Qt::NoPen, QSize(rawSize, rawSize)));
    auto *const bar = new QwtIntervalSymbol(QwtIntervalSymbol::Bar);
    bar->setPen(noise);
    bar->setWidth(barWidth);
    m_intervals->setSymbol(bar);
}

} // namespace RecordViews
