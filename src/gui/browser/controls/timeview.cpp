#include "gui/browser/controls/timeview.h"

#include "axis/timeticks.h"
#include "axis/zoomfactor.h"
#include "util/timeformat.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace Tsb {

namespace {

TimeTextWidths textWidths(const QFontMetrics &metrics)
{
    TimeTextWidths widths;
    widths.month = metrics.horizontalAdvance(QStringLiteral("0000-00"));
    for (int day = 1; day <= 31; ++day)
        widths.day =
            std::max(widths.day, metrics.horizontalAdvance(QStringLiteral("%1").arg(day, 2, 10, QLatin1Char('0'))));
    return widths;
}

} // namespace

TimeView::Surroundings TimeView::realSurroundings()
{
    return {[] { return currentRecordTime(); }, [](QPoint position) { return screenAt(position); }};
}

TimeView::TimeView(QWidget *parent, const Surroundings &surroundings)
    : QFrame(parent), m_screenAt(surroundings.screenAt),
      m_navigator(surroundings.now, [this] { return contentsRect().width(); })
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::OpenHandCursor);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setTimeOffset(0);
    updateFontMetrics();
    connect(&m_navigator, &TimeNavigator::timeScaleChanged, this, &TimeView::timeScaleChanged);
    connect(&m_navigator, &TimeNavigator::timeScaleChanged, this, qOverload<>(&QWidget::update));
    connect(&m_navigator, &TimeNavigator::followNowChanged, this, &TimeView::followNowChanged);
}

void TimeView::updateFontMetrics()
{
    m_lineHeight = fontMetrics().height();
    m_preferredHeight = 2 * m_lineHeight + 6;
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(0.9);
    m_cursorBrush = background;
    updateGeometry();
}

void TimeView::setTimeOffset(std::int64_t seconds)
{
    m_offsetSeconds = seconds;
    setToolTip(tr("Time zone: UTC%1").arg(utcOffsetToString(seconds)));
    update();
}

void TimeView::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    m_navigator.adaptToWidth();
}

void TimeView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange)
        updateFontMetrics();
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endDrag();
    QFrame::changeEvent(event);
}

void TimeView::hideEvent(QHideEvent *event)
{
    endDrag(); // no release comes to a hidden widget, nor to a disabled one
    QFrame::hideEvent(event);
}

// ---- mouse

int TimeView::columnOf(double widgetX) const
{
    return qRound(widgetX) - contentsRect().left();
}

void TimeView::mousePressEvent(QMouseEvent *event)
{
    const bool pans = event->button() == Qt::LeftButton;
    if (m_navigator.isDragging() || (!pans && event->button() != Qt::MiddleButton))
        return QFrame::mousePressEvent(event);
    m_dragButton = event->button();
    m_drag.begin(QPoint(event->x(), height() / 2));
    if (pans)
        m_navigator.beginPan(columnOf(event->x()));
    else
        m_navigator.beginRoll(columnOf(event->x()));
    setCursor(pans ? Qt::ClosedHandCursor : Qt::SizeHorCursor);
}

void TimeView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_navigator.isDragging() || event->button() != m_dragButton)
        return QFrame::mouseReleaseEvent(event);
    endDrag();
}

void TimeView::endDrag()
{
    if (!m_navigator.isDragging())
        return;
    setCursor(Qt::OpenHandCursor);
    m_navigator.endDrag();
}

void TimeView::mouseDoubleClickEvent(QMouseEvent *)
{
    Q_EMIT doubleClicked();
}

void TimeView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_navigator.isDragging())
        return;
    if (m_dragButton == Qt::MiddleButton)
        return m_navigator.roll(event->x() - m_drag.pressPoint().x());
    const QPoint global = event->globalPos();
    // Around the middle a band as high as the widget doesn't zoom.
    if (const auto travel = m_drag.moveTo(event->pos(), global, m_screenAt(global)))
        m_navigator.pan(*travel, height() / 2);
}

void TimeView::wheelEvent(QWheelEvent *event)
{
    if (m_navigator.isDragging())
        return QFrame::wheelEvent(event);
    event->accept();
    const int delta = event->angleDelta().y();
    if (delta != 0)
        changeZoom(zoomOfWheel(delta), columnOf(event->position().x()));
}

// ---- painting

void TimeView::setTimeCursor(bool visible, int value)
{
    if (visible == m_cursorVisible && (!visible || value == m_cursorPixel))
        return;
    m_cursorVisible = visible;
    m_cursorPixel = value;
    update();
}

void TimeView::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setClipRect(contentsRect());
    painter.translate(contentsRect().topLeft());
    paintAxis(painter, contentsRect().size());
    paintCursor(painter, contentsRect().size());
}

void TimeView::paintAxis(QPainter &painter, const QSize &size) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    const TimeAxis axis = timeAxis(timeScale(), size.width(), m_offsetSeconds, textWidths(metrics));
    const int bottom = size.height();
    const QPen pen(palette().color(QPalette::WindowText));
    painter.setPen(pen);
    for (const TimeTick &tick : axis.ticks) {
        if (tick.drawn)
            painter.drawLine(tick.x, bottom - 2, tick.x, bottom);
        const int width = metrics.horizontalAdvance(tick.label);
        if (tick.label.isEmpty() || tick.x - width / 2 > size.width())
            continue;
        painter.drawText(QRect(tick.x - width / 2, m_lineHeight, width, m_lineHeight),
                         Qt::AlignHCenter | Qt::TextDontClip, tick.label);
    }
    for (const TimeGroup &group : axis.groups) {
        const GroupPlacing placing = groupPlacing(group, size.width(), metrics.horizontalAdvance(group.text));
        if (placing == GroupPlacing::Omitted)
            continue;
        const int alignment = placing == GroupPlacing::Left    ? Qt::AlignLeft
                              : placing == GroupPlacing::Right ? Qt::AlignRight
                                                               : Qt::AlignHCenter;
        painter.drawText(QRect(group.left, 0, group.right - group.left, m_lineHeight), alignment | Qt::TextDontClip,
                         group.text);
    }
    painter.setPen(QPen(pen.color(), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    for (const int x : axis.boundaries)
        painter.drawLine(x, bottom - 2, x, bottom);
    painter.setPen(pen);
}

void TimeView::paintCursor(QPainter &painter, const QSize &size) const
{
    if (!m_cursorVisible)
        return;
    const int x = m_cursorPixel - contentsRect().left();
    const TimeCursorLabels labels = timeCursorLabels(timeScale(), x, m_offsetSeconds);
    const QFontMetrics metrics = painter.fontMetrics();
    const auto labelRect = [&](const QString &label, int y) {
        const int width = metrics.horizontalAdvance(label);
        return QRect(x - width / 2, y, width, m_lineHeight);
    };
    const QRect lower = labelRect(labels.lower, m_lineHeight), upper = labelRect(labels.upper, 0);
    painter.fillRect((upper | lower).adjusted(-10, 0, 10, 0), m_cursorBrush);
    painter.drawLine(x, size.height() - 2, x, size.height());
    painter.drawText(lower, Qt::AlignHCenter | Qt::TextDontClip, labels.lower);
    painter.drawText(upper, Qt::AlignHCenter | Qt::TextDontClip, labels.upper);
}

} // namespace Tsb
