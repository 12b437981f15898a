#include "gui/common/recordviews/distribution/discontinuousplotcurve.h"

#include "gui/common/recordviews/distribution/resultdata.h"

#include <QPainter>

#include <qwt_painter.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr double clipMargin = 20; ///< pixels around the canvas, so that joints of wide lines don't show
constexpr double dotSize = 3;     ///< of a point without neighbours, at least

bool isFinite(const QPointF &p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

bool isInside(const QPointF &p, const QRectF &rect)
{
    return p.x() >= rect.left() && p.x() <= rect.right() && p.y() >= rect.top() && p.y() <= rect.bottom();
}

/// The end of a segment that lies outside, moved along it to the rectangle's edge: first against top and bottom, then
/// against left and right. It stays outside if the segment doesn't cross.
QPointF movedToEdge(QPointF end, const QPointF &other, const QRectF &rect)
{
    const double y = std::clamp(end.y(), rect.top(), rect.bottom());
    if (y != end.y() && end.y() != other.y())
        end = {end.x() + (other.x() - end.x()) * ((y - end.y()) / (other.y() - end.y())), y};
    const double x = std::clamp(end.x(), rect.left(), rect.right());
    if (x != end.x() && end.x() != other.x())
        end = {x, end.y() + (other.y() - end.y()) * ((x - end.x()) / (other.x() - end.x()))};
    return end;
}

/// Whether a segment lies on one side of the rectangle.
bool misses(const QPointF &a, const QPointF &b, const QRectF &rect)
{
    return std::max(a.x(), b.x()) < rect.left() || std::min(a.x(), b.x()) > rect.right() ||
           std::max(a.y(), b.y()) < rect.top() || std::min(a.y(), b.y()) > rect.bottom();
}

/// Gathers the points of pieces.
class Pieces {
public:
    explicit Pieces(const QRectF &rect) : m_rect(rect) {}

    void add(const QPointF &point)
    {
        if (!isFinite(point)) {
            end();
            m_hasLast = false;
            return;
        }
        const bool isVisible = isInside(point, m_rect);
        if (m_hasLast)
            goTo(point, isVisible);
        else if (isVisible)
            m_piece << point;
        m_last = point;
        m_isLastVisible = isVisible;
        m_hasLast = true;
    }
    void end()
    {
        if (!m_piece.isEmpty())
            m_all << m_piece;
        m_piece.clear();
    }
    const QVector<QPolygonF> &all() const { return m_all; }

private:
    void goTo(const QPointF &point, bool isVisible)
    {
        if (isVisible) {
            if (!m_isLastVisible)
                m_piece << movedToEdge(m_last, point, m_rect);
            m_piece << point;
        } else if (m_isLastVisible) {
            m_piece << movedToEdge(point, m_last, m_rect);
            end();
        } else if (!misses(m_last, point, m_rect)) {
            const QPointF first = movedToEdge(m_last, point, m_rect);
            const QPointF second = movedToEdge(point, m_last, m_rect);
            if (isInside(first, m_rect) && isInside(second, m_rect))
                m_all << (QPolygonF() << first << second);
        }
    }

    QRectF m_rect;
    QVector<QPolygonF> m_all;
    QPolygonF m_piece;
    QPointF m_last;
    bool m_hasLast = false;
    bool m_isLastVisible = false;
};

void drawDot(QPainter &painter, const QPointF &point)
{
    painter.save();
    QPen pen = painter.pen();
    pen.setCapStyle(Qt::RoundCap);
    pen.setWidthF(std::max(dotSize, pen.widthF()));
    painter.setPen(pen);
    painter.drawPoint(point);
    painter.restore();
}

} // namespace

DiscontinuousPlotCurve::DiscontinuousPlotCurve(const QString &title) : QwtPlotCurve(title) {}

QRectF DiscontinuousPlotCurve::boundingRect() const
{
    return finiteBoundingRect(*data());
}

QVector<QPolygonF> DiscontinuousPlotCurve::visiblePieces(const QPolygonF &points, const QRectF &rect)
{
    Pieces pieces(rect);
    for (const QPointF &point : points)
        pieces.add(point);
    pieces.end();
    return pieces.all();
}

void DiscontinuousPlotCurve::drawCurve(QPainter *painter, int, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                                       const QRectF &canvasRect, int from, int to) const
{
    QPolygonF points;
    points.reserve(to - from + 1);
    for (int i = from; i <= to; ++i) {
        const QPointF point = sample(i);
        points << QPointF(xMap.transform(point.x()), yMap.transform(point.y()));
    }
    const QRectF rect = canvasRect.adjusted(-clipMargin, -clipMargin, clipMargin, clipMargin);
    for (const QPolygonF &piece : visiblePieces(points, rect)) {
        if (piece.size() == 1)
            drawDot(*painter, piece[0]);
        else
            QwtPainter::drawPolyline(painter, piece);
    }
}

} // namespace RecordViews
