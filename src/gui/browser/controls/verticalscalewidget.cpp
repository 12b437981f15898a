#include "gui/browser/controls/verticalscalewidget.h"

#include "axis/scaletitle.h"
#include "axis/valueticks.h"
#include "axis/zoomfactor.h"
#include "gui/browser/controls/plaintooltip.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {
constexpr int tickLength = 4;
constexpr int minorTickLength = 2;
constexpr int labelGap = 6; ///< from a label's right end to the edge
constexpr int titleMargin = 2;
constexpr int wordGap = 4; ///< between a line of the title and the numbers
constexpr double cursorOpacity = 0.9;
constexpr double keyStep = 0.1; ///< of the height
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
    tellTitle();
}

void VerticalScaleWidget::setNotice(const QString &notice)
{
    if (notice == m_notice)
        return;
    m_notice = notice;
    tellTitle();
}

void VerticalScaleWidget::tellTitle()
{
    setToolTip(plainToolTip(title()));
    setAccessibleName(tr("Scale: %1").arg(title().replace(QLatin1Char('\n'), QLatin1Char(' '))));
    invalidateCache();
}

QString VerticalScaleWidget::title() const
{
    return m_notice.isEmpty() ? m_label : QStringLiteral("%1\n(%2)").arg(m_label, m_notice);
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
    setFocusPolicy(on ? Qt::NoFocus : Qt::TabFocus); // a click leaves the keys to the plot
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
    const QPaintEngine &engine = *painter.paintEngine();
    if (engine.type() == QPaintEngine::Raster) {
        const qreal ratio = engine.paintDevice()->devicePixelRatioF();
        const QSize pixmapSize(qRound(area.width() * ratio), qRound(area.height() * ratio));
        if (m_cacheDirty || m_cachedPixmap.size() != pixmapSize)
            renderCache(pixmapSize, ratio);
        painter.drawPixmap(area.topLeft(), m_cachedPixmap);
    } else { // a document, whose texts are texts
        painter.save();
        painter.translate(area.topLeft());
        painter.setClipRect(QRect(QPoint(), area.size()));
        drawScale(painter);
        painter.restore();
    }
    if (m_cursorVisible && !m_label.isEmpty() && m_rangeValid && m_scale.valid)
        drawCursor(painter);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void VerticalScaleWidget::renderCache(const QSize &pixmapSize, qreal ratio)
{
    m_cacheDirty = false;
    m_cachedPixmap = QPixmap(pixmapSize);
    m_cachedPixmap.setDevicePixelRatio(ratio);
    m_cachedPixmap.fill(Qt::transparent);
    QPainter painter(&m_cachedPixmap);
    drawScale(painter);
}

void VerticalScaleWidget::drawScale(QPainter &painter)
{
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    m_numbersWidth = m_rangeValid && m_scale.valid ? drawTicks(painter) : 0;
    drawTitle(painter, contentsRect().width() - m_numbersWidth - labelGap);
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
        if (y >= 0 && y < height) // not every document cuts off what lies beyond
            painter.drawLine(width - (tick.major ? tickLength : minorTickLength), y, width, y);
        if (tick.label.isEmpty() || y < 0 || y > height)
            continue;
        // A text at an edge is moved inward as far as its digits would be cut.
        const int top = std::max(-ink.top(), std::min(y - m_lineHeight / 2, height - ink.bottom() - 1));
        painter.drawText(QRect(0, top, width - labelGap, m_lineHeight), Qt::AlignRight | Qt::AlignTop,
                         metrics.elidedText(tick.label, Qt::ElideLeft, width - labelGap)); // half a number misleads
        widest = std::max(widest, metrics.horizontalAdvance(tick.label));
    }
    return widest;
}

/// The icon on top, and the label beside and below it.
void VerticalScaleWidget::drawTitle(QPainter &painter, int freeWidth) const
{
    const int height = contentsRect().height();
    const QFontMetrics metrics = fontMetrics();
    int top = titleMargin, beside = titleMargin;
    if (!m_icon.isNull()) {
        painter.drawPixmap(titleMargin, std::max(0, (m_lineHeight - m_icon.height()) / 2), m_icon);
        top = m_lineHeight;
        beside = m_icon.width() + 3 * titleMargin;
    }
    TitleRoom room;
    room.lineHeight = m_lineHeight;
    const int right = freeWidth - wordGap;
    room.firstLine = right - beside;
    room.line = right - titleMargin;
    room.lines = (height + metrics.descent()) / std::max(1, m_lineHeight);
    room.firstUpwards = height - top - titleMargin;
    room.upwards = height - 2 * titleMargin;
    room.depth = freeWidth;
    const auto widthOf = [&metrics](const QString &text) { return metrics.horizontalAdvance(text); };
    const TitlePlan plan = planTitle(title(), room, widthOf);
    painter.save();
    if (plan.upwards) {
        painter.translate(titleMargin, height - titleMargin);
        painter.rotate(-90);
    }
    const bool allShort = std::all_of(plan.lines.begin(), plan.lines.end(),
                                      [&](const QString &line) { return widthOf(line) <= room.firstUpwards; });
    for (int i = 0; i < plan.lines.size(); ++i) {
        const int left = plan.upwards ? 0 : i == 0 ? beside : titleMargin;
        const int length = !plan.upwards        ? right - left
                           : i == 0 || allShort ? room.firstUpwards // one centre for all where there is one
                                                : room.upwards;
        const QRect place(left, i * m_lineHeight, std::max(0, length), m_lineHeight);
        painter.drawText(place, plan.upwards ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(plan.lines[i], Qt::ElideRight, place.width()));
    }
    painter.restore();
}

void VerticalScaleWidget::drawCursor(QPainter &painter) const
{
    const QRect area = contentsRect();
    const int y = m_cursorPixel;
    const int top = y - m_lineHeight / 2;
    const int right = area.x() + area.width();
    const double value = m_scale.value(heightAt(y));
    const QString text = QString::number(m_appearLog ? std::pow(10.0, value) : value, 'g', 3);
    // The title beside the numbers stays in sight; a value wider than all of them still has a ground.
    const int width = labelGap + std::max(m_numbersWidth, fontMetrics().horizontalAdvance(text));
    painter.setClipRect(area);
    painter.fillRect(right - width, top - 2, width, m_lineHeight + 4, m_cursorBrush);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(right - 3, y, right, y);
    painter.drawText(QRect(area.x(), top, area.width() - labelGap, m_lineHeight), Qt::AlignRight | Qt::AlignVCenter,
                     text);
}

// ---- keys

void VerticalScaleWidget::keyPressEvent(QKeyEvent *event)
{
    const int height = contentsRect().height();
    ValueScale scale = m_scale.rebased(height / 2.0);
    switch (m_readOnly ? Qt::Key_unknown : event->key()) {
    case Qt::Key_Up: // to greater values
        scale.originPixel -= height * keyStep;
        break;
    case Qt::Key_Down:
        scale.originPixel += height * keyStep;
        break;
    case Qt::Key_Plus:
        scale.valuePerPixel *= zoomOfSteps(1);
        break;
    case Qt::Key_Minus:
        scale.valuePerPixel *= zoomOfSteps(-1);
        break;
    case Qt::Key_Home:
        return Q_EMIT requestAutoscale();
    default:
        return QFrame::keyPressEvent(event);
    }
    if (scale.isUsable(height))
        setScale(scale, true);
}

// ---- mouse

double VerticalScaleWidget::heightAt(int widgetY) const
{
    const QRect area = contentsRect();
    return area.y() + area.height() - widgetY;
}

void VerticalScaleWidget::mousePressEvent(QMouseEvent *event)
{
    if (m_readOnly || event->button() != Qt::LeftButton)
        return QFrame::mousePressEvent(event);
    m_drag.begin(event->pos());
    m_dragStartScale = m_scale.rebased(heightAt(event->pos().y()));
    m_dragging = true;
    setCursor(Qt::ClosedHandCursor);
}

void VerticalScaleWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging || !event->buttons().testFlag(Qt::LeftButton)) // the release may have gone elsewhere
        return QFrame::mouseMoveEvent(event);
    const QPoint global = event->globalPos();
    const QPoint delta = m_drag.moveTo(event->pos(), global, screenAt(global)).value_or(QPoint());
    ValueScale scale = m_dragStartScale;
    scale.valuePerPixel = zoomOfDrag(delta.x()) * m_dragStartScale.valuePerPixel;
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
    scale.valuePerPixel *= zoomOfWheel(event->angleDelta().y());
    if (event->angleDelta().y() != 0 && scale.isUsable(contentsRect().height()))
        setScale(scale, true);
}

} // namespace Tsb
