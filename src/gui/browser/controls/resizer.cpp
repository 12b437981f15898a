#include "gui/browser/controls/resizer.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace Tsb {

Resizer::Resizer(QWidget *target, QWidget *parent) : QWidget(parent), m_target(target)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::SplitVCursor);
}

QSize Resizer::sizeHint() const
{
    const int extent = style()->pixelMetric(QStyle::PM_SplitterWidth, nullptr, this);
    QStyleOption option;
    option.initFrom(this);
    option.state = QStyle::State_None; // a grip between rows: the style is to see a horizontal bar
    const QSize size = style()->sizeFromContents(QStyle::CT_Splitter, &option, QSize(extent, extent), this);
    return size.expandedTo(QApplication::globalStrut()).expandedTo(QSize(6, 6));
}

void Resizer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOption option;
    option.rect = contentsRect();
    option.palette = palette();
    option.state = QStyle::State_None;
    option.state.setFlag(QStyle::State_MouseOver, m_hovered);
    option.state.setFlag(QStyle::State_Sunken, m_dragging);
    option.state.setFlag(QStyle::State_Enabled, isEnabled());
    style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
}

void Resizer::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_target)
        return QWidget::mousePressEvent(event);
    m_dragging = true;
    m_pressPosition = event->globalPos();
    m_startHeight = m_target->height();
    update();
}

void Resizer::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging || !m_target)
        return QWidget::mouseMoveEvent(event);
    setTargetHeight(m_startHeight + event->globalY() - m_pressPosition.y());
}

void Resizer::setTargetHeight(int height)
{
    if (!m_target)
        return;
    height = std::max({height, m_target->minimumSizeHint().height(), m_minimumHeight});
    if (m_maximumHeight > 0)
        height = std::min(height, m_maximumHeight);
    m_target->setFixedHeight(height);
}

void Resizer::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_dragging)
        return QWidget::mouseReleaseEvent(event);
    m_dragging = false;
    update();
    Q_EMIT resized();
}

void Resizer::enterEvent(QEvent *)
{
    m_hovered = true;
    update();
}

void Resizer::leaveEvent(QEvent *)
{
    m_hovered = false;
    update();
}

} // namespace Tsb
