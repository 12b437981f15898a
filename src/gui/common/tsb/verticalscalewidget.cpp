#include "gui/common/tsb/verticalscalewidget.h"
#include "gui/common/tsb/plaintooltip.h"
#include "gui/common/tsb/valueticks.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {
constexpr int tickLength = 4;
constexpr int minorTickLength = 2;
constexpr int labelGap = 6; ///< from a label's right end to the edge
constexpr int titleMargin = 2;
constexpr double cursorOpacity = 0.9;
} // namespace

VerticalScaleWidget::VerticalScaleWidget(QWidget *parent) : QFrame(parent)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    applyPalette();
    setReadOnly(false);
}

void VerticalScaleWidget::applyPalette()
{
    m_lineHeight = fontMetrics().height();
    QColor color = palette().color(QPalette::Window);
    color.setAlphaF(cursorOpacity);
    m_cursorBrush = QBrush(color);
    invalidateCache();
}

void VerticalScaleWidget::invalidateCache()
{
    m_cacheDirty = true;
    update();
}

void VerticalScaleWidget::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange || event->type() == QEvent::EnabledChange)
        applyPalette();
}

// ---- scale and range

void VerticalScaleWidget::setScale(const ValueScale &scale, bool updateMinMax)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    if (updateMinMax) {
        m_rangeValid = scale.valid;
        this->updateMinMax();
    }
    Q_EMIT scaleChanged(m_scale);
    invalidateCache();
}

void VerticalScaleWidget::updateMinMax()
{
    setMinMax(m_scale.value(0), m_scale.value(contentsRect().height()), false);
}

void VerticalScaleWidget::setMinMax(double lower, double upper, bool updateScale)
{
    const bool valid = !std::isnan(lower) && !std::isnan(upper);
    if (valid == m_rangeValid && sameValue(lower, m_minimum) && sameValue(upper, m_maximum))
        return;
    m_minimum = lower;
    m_maximum = upper;
    if (updateScale) {
        m_rangeValid = valid;
        this->updateScale();
    }
    Q_EMIT minMaxChanged(m_minimum, m_maximum);
    invalidateCache();
}

void VerticalScaleWidget::updateScale()
{
    const int height = contentsRect().height();
    if (height <= 0 || !m_rangeValid)
        setScale(ValueScale(), false);
    else
        setScale({true, m_minimum, (m_maximum - m_minimum) / height, 0}, false);
}

void VerticalScaleWidget::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    updateScale();
}

// ---- appearance

void VerticalScaleWidget::setLabel(const QString &label)
{
    if (label == m_label)
        return;
    m_label = label;
    setToolTip(plainToolTip(label));
    invalidateCache();
}

void VerticalScaleWidget::setAppearLog(bool on)
{
    if (on == m_appearLog)
        return;
    m_appearLog = on;
    invalidateCache();
}

void VerticalScaleWidget::setReadOnly(bool on)
{
    if (on == m_readOnly)
        return;
    m_readOnly = on;
    m_dragging = false;
    setCursor(on ? Qt::ArrowCursor : Qt::OpenHandCursor);
    setStatusTip(on ? QString()
                    : tr("Click and drag vertically to pan, horizontally to zoom. Double click to autoscale."));
}

void VerticalScaleWidget::showCursor(bool visible, int pixel)
{
    if (visible == m_cursorVisible && pixel == m_cursorPixel)
        return;
    m_cursorVisible = visible;
    m_cursorPixel = pixel;
    update();
}

void VerticalScaleWidget::setIcon(const QPixmap &icon)
{
    m_icon = icon;
    invalidateCache();
}

// ---- painting

void VerticalScaleWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QRect area = contentsRect();
    if (area.isEmpty())
        return;
    const qreal ratio = devicePixelRatioF();
    const QSize pixmapSize(qRound(area.width() * ratio), qRound(area.height() * ratio));
    if (m_cacheDirty || m_cachedPixmap.size() != pixmapSize)
        renderCache(pixmapSize, ratio);
    painter.drawPixmap(area.topLeft(), m_cachedPixmap);
    if (m_cursorVisible && !m_label.isEmpty() && m_rangeValid && m_scale.valid)
        drawCursor(painter);
}

void VerticalScaleWidget::renderCache(const QSize &pixmapSize, qreal ratio)
{
    m_cacheDirty = false;
    m_cachedPixmap = QPixmap(pixmapSize);
    m_cachedPixmap.setDevicePixelRatio(ratio);
    m_cachedPixmap.fill(Qt::transparent);
    QPainter painter(&m_cachedPixmap);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    const int labelWidth = m_rangeValid && m_scale.valid ? drawTicks(painter) : 0;
    drawTitle(painter, contentsRect().width() - labelWidth - labelGap);
}

int VerticalScaleWidget::drawTicks(QPainter &painter) const
{
    const int width = contentsRect().width();
    const int height = contentsRect().height();
    const auto ticks = m_appearLog ? logarithmicTicks(m_minimum, m_maximum, height, m_lineHeight)
                                   : linearTicks(m_minimum, m_maximum, height, m_lineHeight);
    const QFontMetrics metrics = fontMetrics();
    const QRect ink = metrics.tightBoundingRect(QStringLiteral("0")).translated(0, metrics.ascent());
    int widest = 0;
    for (const ValueTick &tick : ticks) {
        const double fromBottom = m_scale.pixel(tick.value);
        if (!(std::abs(fromBottom) < 1e6))
            continue;
        const int y = int(std::floor(height - fromBottom));
        painter.drawLine(width - (tick.major ? tickLength : minorTickLength), y, width, y);
        if (tick.label.isEmpty() || y < 0 || y > height)
            continue;
        // A text at an edge is moved inward as far as its digits would be cut.
        const int top = std::max(-ink.top(), std::min(y - m_lineHeight / 2, height - ink.bottom() - 1));
        painter.drawText(QRect(0, top, width - labelGap, m_lineHeight), Qt::AlignRight | Qt::AlignTop, tick.label);
        widest = std::max(widest, metrics.horizontalAdvance(tick.label));
    }
    return widest;
}

namespace {

struct WrappedText {
    QStringList lines;
    bool fits = true; ///< every line has the room that it needs
};

/// The words of a text in as few lines as they fit into; roomIn(i) is the width of line i.
template<typename RoomIn>
WrappedText wrapped(QString text, const QFontMetrics &metrics, RoomIn roomIn)
{
    WrappedText result;
    result.lines << QString();
    for (const QString &word : text.replace(QLatin1Char('\n'), QLatin1Char(' ')).split(QLatin1Char(' '))) {
        QString &line = result.lines.last();
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (line.isEmpty() || metrics.horizontalAdvance(longer) <= roomIn(result.lines.size() - 1))
            line = longer;
        else
            result.lines << word;
    }
    for (int i = 0; i < result.lines.size(); ++i)
        result.fits = result.fits && metrics.horizontalAdvance(result.lines[i]) <= roomIn(i);
    return result;
}

} // namespace

/// The icon on top and the label below it: upwards as it is where it fits, else word by word from left to right,
/// beginning beside the icon, or upwards, if one of these has room for all of it. The ends of names tell them apart.
void VerticalScaleWidget::drawTitle(QPainter &painter, int freeWidth) const
{
    const QFontMetrics metrics = fontMetrics();
    const int height = contentsRect().height();
    int top = titleMargin, beside = titleMargin;
    if (!m_icon.isNull()) {
        const int inset = std::max(0, (m_lineHeight - m_icon.height()) / 2);
        painter.drawPixmap(titleMargin + inset, inset, m_icon);
        top = m_lineHeight;
        beside += m_icon.width() + 2 * titleMargin;
    }
    const int upwards = height - top - titleMargin;
    const int linesUpwards = freeWidth / m_lineHeight;
    const QStringList lines = m_label.split(QLatin1Char('\n'));
    const auto fitsUpwards = [&](const QString &line) { return metrics.horizontalAdvance(line) <= upwards; };
    if (lines.size() <= linesUpwards && std::all_of(lines.begin(), lines.end(), fitsUpwards))
        return drawTitleUpwards(painter, lines, upwards);

    const auto leftOf = [beside](int line) { return line == 0 ? beside : titleMargin; };
    WrappedText across = wrapped(m_label, metrics, [&](int line) { return freeWidth - leftOf(line); });
    const int linesAcross = std::max(1, (height + metrics.descent()) / m_lineHeight);
    if (!across.fits || across.lines.size() > linesAcross) {
        const WrappedText up = wrapped(m_label, metrics, [upwards](int) { return upwards; });
        if (up.fits && up.lines.size() <= linesUpwards)
            return drawTitleUpwards(painter, up.lines, upwards);
    }
    if (across.lines.size() > linesAcross) // the last that is shown tells by its end that there is more
        across.lines = across.lines.mid(0, linesAcross - 1)
                       << across.lines[linesAcross - 1] + QLatin1Char(' ') + across.lines[linesAcross];
    for (int i = 0; i < across.lines.size(); ++i) {
        const int room = std::max(0, freeWidth - leftOf(i));
        painter.drawText(QRect(leftOf(i), i * m_lineHeight, room, m_lineHeight), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(across.lines[i], Qt::ElideRight, room));
    }
}

void VerticalScaleWidget::drawTitleUpwards(QPainter &painter, const QStringList &lines, int room) const
{
    painter.save();
    painter.translate(titleMargin, contentsRect().height() - titleMargin);
    painter.rotate(-90);
    for (int i = 0; i < lines.size(); ++i)
        painter.drawText(QRect(0, i * m_lineHeight, room, m_lineHeight), Qt::AlignCenter, lines[i]);
    painter.restore();
}

void VerticalScaleWidget::drawCursor(QPainter &painter) const
{
    const QRect area = contentsRect();
    const int y = m_cursorPixel;
    const int top = y - m_lineHeight / 2;
    const int right = area.x() + area.width();
    painter.setClipRect(area);
    painter.fillRect(area.x(), top - 2, area.width(), m_lineHeight + 4, m_cursorBrush);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(right - 3, y, right, y);
    const double value = m_scale.value(heightAt(y));
    painter.drawText(QRect(area.x(), top, area.width() - labelGap, m_lineHeight), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(m_appearLog ? std::pow(10.0, value) : value, 'g', 3));
}

// ---- mouse

double VerticalScaleWidget::heightAt(int widgetY) const
{
    const QRect area = contentsRect();
    return area.y() + area.height() - widgetY;
}

void VerticalScaleWidget::mousePressEvent(QMouseEvent *event)
{
    if (m_readOnly || m_dragging || event->button() != Qt::LeftButton)
        return QFrame::mousePressEvent(event);
    m_drag.begin(event->pos());
    m_dragStartScale = m_scale.rebased(heightAt(event->pos().y()));
    m_dragging = true;
    setCursor(Qt::ClosedHandCursor);
}

void VerticalScaleWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging)
        return QFrame::mouseMoveEvent(event);
    const QPoint global = event->globalPos();
    const QPoint delta = m_drag.moveTo(event->pos(), global, screenAt(global)).value_or(QPoint());
    ValueScale scale = m_dragStartScale;
    scale.valuePerPixel = std::pow(0.99, delta.x()) * m_dragStartScale.valuePerPixel;
    scale.originPixel = m_dragStartScale.originPixel - delta.y();
    if (scale.isUsable(contentsRect().height()))
        setScale(scale, true);
}

void VerticalScaleWidget::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_dragging || event->button() != Qt::LeftButton)
        return QFrame::mouseReleaseEvent(event);
    m_dragging = false;
    setCursor(Qt::OpenHandCursor);
}

void VerticalScaleWidget::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (m_readOnly || event->button() != Qt::LeftButton)
        return QFrame::mouseDoubleClickEvent(event);
    Q_EMIT requestAutoscale();
}

void VerticalScaleWidget::wheelEvent(QWheelEvent *event)
{
    if (m_readOnly || m_dragging)
        return QFrame::wheelEvent(event);
    event->accept();
    ValueScale scale = m_scale.rebased(heightAt(int(event->position().y())));
    scale.valuePerPixel *= std::pow(0.9, event->angleDelta().y() * 0.125 / 15);
    if (event->angleDelta().y() != 0 && scale.isUsable(contentsRect().height()))
        setScale(scale, true);
}

} // namespace Tsb
