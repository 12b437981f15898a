#include "gui/common/recordviews/plotreadout.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr int markSize = 11;
constexpr int gap = 4; ///< between the label and the canvas' edge
constexpr int digits = 4;

/// A ring around the point.
class Mark : public QWidget {
public:
    explicit Mark(QWidget *parent) : QWidget(parent) { resize(markSize, markSize); }
    QColor color;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 2));
        painter.drawEllipse(QRectF(rect()).adjusted(2, 2, -2, -2));
    }
};

bool isFinite(const QPointF &p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

QString valueText(double value, const QString &unit)
{
    const QString number = QString::number(value, 'g', digits);
    return unit.isEmpty() ? number : QStringLiteral("%1 %2").arg(number, unit);
}

} // namespace

PlotReadout::PlotReadout(QwtPlot *plot, Source source)
    : QObject(plot), m_plot(plot), m_source(std::move(source)), m_label(new QLabel(plot->canvas())),
      m_mark(new Mark(plot->canvas()))
{
    m_label->setTextFormat(Qt::PlainText);
    m_label->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_label->setAutoFillBackground(true);
    m_label->setBackgroundRole(QPalette::ToolTipBase);
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setMargin(2);
    for (QWidget *widget : {static_cast<QWidget *>(m_label.data()), m_mark.data()}) {
        widget->setAttribute(Qt::WA_TransparentForMouseEvents);
        widget->hide();
    }
    plot->canvas()->setMouseTracking(true);
    plot->canvas()->installEventFilter(this);
}

void PlotReadout::setUnits(const QString &x, const QString &y)
{
    m_xUnit = x;
    m_yUnit = y;
}

QString PlotReadout::text() const
{
    return m_label->isHidden() ? QString() : m_label->text();
}

bool PlotReadout::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::MouseMove)
        pointAt(static_cast<QMouseEvent *>(event)->localPos());
    else if (event->type() == QEvent::Leave || event->type() == QEvent::Hide)
        hide();
    return false;
}

void PlotReadout::pointAt(const QPointF &pixel)
{
    m_pointer = pixel;
    const QVector<Series> all = m_source();
    QVector<Hit> hits;
    for (int i = 0; i < all.size(); ++i)
        hits += hitsOf(all, i);
    show(all, nearest(hits, pixel));
}

void PlotReadout::refresh()
{
    if (!m_label->isHidden())
        pointAt(m_pointer);
}

void PlotReadout::hide()
{
    if (m_label)
        m_label->hide();
    if (m_mark)
        m_mark->hide();
    m_shown = {};
}

QVector<PlotReadout::Hit> PlotReadout::hitsOf(const QVector<Series> &all, int series) const
{
    const QwtScaleMap xMap = m_plot->canvasMap(QwtPlot::xBottom);
    const QwtScaleMap yMap = m_plot->canvasMap(QwtPlot::yLeft);
    const QRectF seen = QRectF(m_plot->canvas()->rect()).adjusted(-1, -1, 1, 1);
    const QVector<QPointF> &points = all[series].points;
    QVector<Hit> hits;
    for (int i = 0; i < points.size(); ++i) {
        const QPointF pixel(xMap.transform(points[i].x()), yMap.transform(points[i].y()));
        if (isFinite(points[i]) && isFinite(pixel) && seen.contains(pixel))
            hits.append({series, i, pixel});
    }
    return hits;
}

PlotReadout::Hit PlotReadout::nearest(const QVector<Hit> &hits, const QPointF &pixel)
{
    const auto distance = [&](const Hit &hit) {
        return std::hypot(hit.pixel.x() - pixel.x(), hit.pixel.y() - pixel.y());
    };
    const auto best = std::min_element(hits.begin(), hits.end(),
                                       [&](const Hit &a, const Hit &b) { return distance(a) < distance(b); });
    return best == hits.end() ? Hit() : *best;
}

void PlotReadout::stepPoint(int step)
{
    const QVector<Series> all = m_source();
    if (m_shown.series < 0 || m_shown.series >= all.size())
        return pointAt(QRectF(m_plot->canvas()->rect()).center());
    QVector<Hit> hits = hitsOf(all, m_shown.series);
    std::sort(hits.begin(), hits.end(), [](const Hit &a, const Hit &b) { return a.pixel.x() < b.pixel.x(); });
    const auto shown =
        std::find_if(hits.begin(), hits.end(), [this](const Hit &h) { return h.point == m_shown.point; });
    const int next = shown == hits.end() ? 0 : int(shown - hits.begin()) + step;
    if (next >= 0 && next < hits.size())
        point(all, hits[next]);
}

void PlotReadout::stepSeries(int step)
{
    const QVector<Series> all = m_source();
    if (m_shown.series < 0 || m_shown.series >= all.size())
        return pointAt(QRectF(m_plot->canvas()->rect()).center());
    for (int i = m_shown.series + step; i >= 0 && i < all.size(); i += step) {
        const Hit hit = nearest(hitsOf(all, i), m_shown.pixel);
        if (hit.point >= 0)
            return point(all, hit);
    }
}

/// As if the pointer were there.
void PlotReadout::point(const QVector<Series> &all, const Hit &hit)
{
    m_pointer = hit.pixel;
    show(all, hit);
}

void PlotReadout::show(const QVector<Series> &all, const Hit &hit)
{
    if (hit.point < 0)
        return hide();
    m_shown = hit;
    const Series &series = all[hit.series];
    const QPointF value = series.points[hit.point];
    const QString x =
        hit.point < series.pointNames.size() ? series.pointNames[hit.point] : valueText(value.x(), m_xUnit);
    const QRect canvas = m_plot->canvas()->contentsRect().adjusted(gap, gap, -gap, -gap);
    const QString name = m_label->fontMetrics().elidedText(series.name, Qt::ElideMiddle, canvas.width() - 4 * gap);
    const QString y = valueText(value.y(), m_yUnit);
    m_label->setText(QStringLiteral("%1\n%2, %3").arg(name, x, y));
    if (m_label->sizeHint().width() > canvas.width())
        m_label->setText(QStringLiteral("%1\n%2,\n%3").arg(name, x, y));
    m_label->adjustSize();
    const bool isLeft = hit.pixel.x() < canvas.center().x();
    const bool isBelow = hit.pixel.y() > canvas.top() + m_label->height() + markSize;
    m_label->move(isLeft ? std::max(canvas.left(), canvas.right() - m_label->width()) : canvas.left(),
                  isBelow ? canvas.top() : std::max(canvas.top(), canvas.bottom() - m_label->height()));
    m_label->show();
    auto *mark = static_cast<Mark *>(m_mark.data());
    mark->color = series.color;
    mark->move((hit.pixel - QPointF(markSize, markSize) / 2).toPoint());
    mark->update();
    mark->show();
}

} // namespace RecordViews
