#include "gui/browser/controls/colorbar.h"

#include "axis/decadelabels.h"

#include <QImage>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

constexpr double halo = 0x80 / 255.0; ///< opacity of the light rim around ticks and texts

QPen haloPen()
{
    QColor color(Qt::white);
    color.setAlphaF(halo);
    return QPen(color, 3);
}

} // namespace

Colorbar::Colorbar(Qt::Orientation orientation, QWidget *parent) : Colorbar(orientation, *new Tsb::ColorLimits, parent)
{
    m_limits->setParent(this);
    m_limits->set(m_limits->lower(), m_limits->upper());
}

Colorbar::Colorbar(Qt::Orientation orientation, Tsb::ColorLimits &limits, QWidget *parent)
    : QFrame(parent), m_limits(&limits), m_orientation(orientation)
{
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setSizePolicy(QSizePolicy::Preferred, sizePolicy().verticalPolicy());
    setCursor(Qt::OpenHandCursor);
    setMouseTracking(true);
    setAccessibleName(tr("Color scale"));
    setStatusTip(tr("Click and drag left/right half of the colorscale to change minimum/maximum values."));
    updateLabelFont();
    connect(m_limits, &Tsb::ColorLimits::changed, this, qOverload<>(&Colorbar::update));
    connect(m_limits, &Tsb::ColorLimits::changed, this, &Colorbar::limitsChanged);
}

void Colorbar::updateLabelFont()
{
    m_labelFont = font();
    if (m_labelFont.pointSizeF() > 0)
        m_labelFont.setPointSizeF(std::max(1.0, m_labelFont.pointSizeF() - 1));
    else // a font of pixels has no points
        m_labelFont.setPixelSize(std::max(1, m_labelFont.pixelSize() - 1));
}

void Colorbar::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateLabelFont();
        updateGeometry();
    }
}

QSize Colorbar::minimumSizeHint() const
{
    return {300, fontMetrics().height() + 5};
}

void Colorbar::setColormap(const Colormap::Map &colormap)
{
    m_colormap = colormap;
    update();
}

void Colorbar::setLimits(double lower, double upper)
{
    m_limits->set(lower, upper);
}

void Colorbar::markValue(double value)
{
    m_markedValue = value;
    update();
}

// ---- painting

void Colorbar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QRect area = contentsRect();
    if (!m_colormap || area.isEmpty())
        return;
    painter.setClipRect(area);
    drawColors(painter, area);
    if (!(upper() > lower()))
        return;
    painter.translate(area.topLeft());
    if (m_orientation == Qt::Horizontal)
        drawHorizontalTicks(painter, QRect(QPoint(), area.size()));
    else
        drawVerticalTicks(painter, QRect(QPoint(), area.size()));
}

void Colorbar::drawColors(QPainter &painter, const QRect &area) const
{
    const qreal ratio = painter.paintEngine()->paintDevice()->devicePixelRatioF();
    QImage image(qRound(area.width() * ratio), qRound(area.height() * ratio), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        if (m_orientation == Qt::Vertical)
            std::fill_n(line, image.width(), m_colormap(1 - double(y) / image.height()));
        else if (y == 0)
            for (int x = 0; x < image.width(); ++x)
                line[x] = m_colormap(double(x) / image.width());
        else
            std::copy_n(reinterpret_cast<const QRgb *>(image.constScanLine(0)), image.width(), line);
    }
    painter.drawImage(area, image);
}

double Colorbar::tickPosition(double decade, int size) const
{
    return Tsb::decadePixel(decade, lower(), upper(), size);
}

void Colorbar::drawHorizontalTicks(QPainter &painter, const QRect &area) const
{
    const int h = area.height();
    QPainterPath ticks;
    const auto addTick = [&](double decade, double length) {
        const double x = tickPosition(decade, area.width());
        ticks.moveTo(x, h);
        ticks.lineTo(x, h - length);
    };
    Tsb::forEachDecade(lower(), upper(), [&](double decade) {
        addTick(decade, 3);
        for (int m = 2; m <= 9; ++m)
            addTick(decade + std::log10(m), 1.5);
    });
    const std::vector<Label> labels = std::isnan(m_markedValue) ? decadeLabels(area.size()) : markLabel(area.size());
    QPainterPath outlines;
    for (const Label &label : labels)
        outlines.addText(label.start, m_labelFont, label.text);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(ticks, haloPen());
    painter.strokePath(outlines, haloPen());
    painter.strokePath(ticks, QPen(Qt::black));
    if (painter.paintEngine()->type() == QPaintEngine::Raster)
        return painter.fillPath(outlines, Qt::black);
    painter.setFont(m_labelFont); // in a document texts are texts
    painter.setPen(Qt::black);
    for (const Label &label : labels)
        painter.drawText(label.start, label.text);
}

std::vector<Colorbar::Label> Colorbar::decadeLabels(const QSize &size) const
{
    const QFontMetrics metrics(m_labelFont, this);
    const int baseline = (metrics.height() - 3 + size.height()) / 2 - metrics.descent();
    const int gap = metrics.horizontalAdvance(QLatin1Char(' '));
    const auto widthOf = [&metrics](const QString &text) { return metrics.horizontalAdvance(text); };
    std::vector<Label> labels;
    for (const Tsb::DecadeLabel &label : Tsb::decadeLabels(lower(), upper(), size.width(), gap, widthOf))
        labels.push_back({QPointF(label.left, baseline), label.text});
    return labels;
}

std::vector<Colorbar::Label> Colorbar::markLabel(const QSize &size) const
{
    const QFontMetrics metrics(m_labelFont, this);
    const QString text = QString::number(std::pow(10.0, m_markedValue), 'g', 6);
    const double furthest = size.width() - metrics.horizontalAdvance(text) - 3;
    const double x = std::max(3.0, std::min(tickPosition(m_markedValue, size.width()) + 3, furthest));
    const int baseline = (metrics.height() - 3 + size.height()) / 2 - metrics.descent();
    return {{QPointF(x, baseline), text}};
}

void Colorbar::drawVerticalTicks(QPainter &painter, const QRect &area) const
{
    const QFontMetrics metrics(m_labelFont, this);
    painter.setFont(m_labelFont);
    QColor faint(Qt::black);
    faint.setAlphaF(halo);
    const auto drawTick = [&](double v, const QPen &pen) {
        const double y = (upper() - v) / (upper() - lower()) * area.height();
        painter.setPen(pen);
        painter.drawLine(QLineF(0, y, 2, y));
        painter.drawLine(QLineF(area.width() - 3, y, area.width(), y));
        return y;
    };
    double freeAbove = area.height() + metrics.height();
    Tsb::forEachDecade(lower(), upper(), [&](double decade) {
        for (int m = 2; m <= 9; ++m)
            drawTick(decade + std::log10(m), QPen(faint, 1));
        const double y = drawTick(decade, QPen(Qt::black, 2));
        if (y + metrics.height() / 2.0 > freeAbove)
            return;
        painter.drawText(QRectF(0, y - metrics.height() / 2.0, area.width(), metrics.height()), Qt::AlignCenter,
                         QString::number(decade, 'g', 6));
        freeAbove = y - metrics.height() / 2.0;
    });
}

// ---- mouse

int Colorbar::length() const
{
    const QRect area = contentsRect();
    return std::max(1, m_orientation == Qt::Horizontal ? area.width() : area.height());
}

int Colorbar::along(const QPoint &pos) const
{
    const QRect area = contentsRect();
    return m_orientation == Qt::Horizontal ? pos.x() - area.x() : area.y() + area.height() - pos.y();
}

int Colorbar::across(const QPoint &pos) const
{
    return m_orientation == Qt::Horizontal ? pos.y() : -pos.x();
}

void Colorbar::mousePressEvent(QMouseEvent *event)
{
    const int size = length();
    const int p = along(event->pos());
    m_pressPoint = event->pos();
    m_pressValue = valueAt(p);
    m_valuePerPixel = (upper() - lower()) / size;
    m_startUpper = upper();
    m_startLower = lower();
    if (event->button() == Qt::LeftButton) {
        if (p >= size / 2 && p <= size - size / 2)
            return; // the middle belongs to neither half
        m_dragMode = p < size / 2 ? DragLower : DragUpper;
        m_dragging = true;
        setCursor(Qt::ClosedHandCursor);
    } else if (event->button() == Qt::RightButton) {
        Q_EMIT mouseMarkedValue(m_pressValue);
        event->accept();
    }
}

void Colorbar::dragTo(const QPoint &pos)
{
    const double size = length();
    const double p0 = along(m_pressPoint);
    const double d = along(pos) - p0;
    if (m_dragMode == DragUpper) {
        setLimits(m_startLower, m_startLower + p0 / (p0 + d) * (m_startUpper - m_startLower));
    } else if (m_dragMode == DragLower) {
        setLimits(m_startUpper + (size - p0) / (size - p0 - d) * (m_startLower - m_startUpper), m_startUpper);
    } else { // about the press point; no press chooses this yet
        const double perPixel = std::pow(0.995, across(pos) - across(m_pressPoint)) * m_valuePerPixel;
        const double base = m_pressValue - d * perPixel;
        setLimits(base - p0 * perPixel, base + (size - p0) * perPixel);
    }
}

void Colorbar::mouseMoveEvent(QMouseEvent *event)
{
    const int p = along(event->pos());
    const bool marks = event->buttons().testFlag(Qt::RightButton);
    // A release that went elsewhere, as to a dialog that came up, ends a drag too.
    if (m_dragging && !event->buttons().testFlag(Qt::LeftButton))
        m_dragging = false;
    if (!marks && !std::isnan(m_markedValue))
        Q_EMIT mouseMarkedValue(std::numeric_limits<double>::quiet_NaN());
    if (m_dragging) {
        dragTo(event->pos());
    } else if (marks) {
        Q_EMIT mouseMarkedValue(valueAt(p));
        event->accept();
    } else {
        const int edge = std::min(length() / 3, 30);
        setCursor(p < edge || p > length() - edge ? Qt::OpenHandCursor : Qt::ArrowCursor);
    }
}

void Colorbar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_dragging) {
        setCursor(Qt::OpenHandCursor);
        m_dragging = false;
    } else if (event->button() == Qt::RightButton) {
        Q_EMIT mouseMarkedValue(std::numeric_limits<double>::quiet_NaN());
        event->accept();
    }
}

void Colorbar::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
    else
        mousePressEvent(event);
}

void Colorbar::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const double steps = event->angleDelta().y() * 0.125 / 15;
    if (along(event->position().toPoint()) >= length() / 2.0)
        setLimits(lower(), upper() + steps * 0.02);
    else
        setLimits(lower() + steps * 0.02, upper());
}

void Colorbar::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
}
