#include "gui/browser/views/viewholder.h"

#include "gui/browser/views/view.h"

#include <QFrame>
#include <QHash>
#include <QMouseEvent>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace Tsb {

int dropIndex(const QVector<QRect> &items, int placeholderIndex, int spacing, int y)
{
    int candidate = 0, offset = 0;
    for (int i = 0; i < items.size(); ++i) {
        const QRect &item = items[i];
        if (i == placeholderIndex) {
            offset = item.height() + spacing;
            continue;
        }
        if (y <= item.y() + item.height() / 2 - offset)
            break;
        candidate = i <= placeholderIndex ? i + 1 : i;
    }
    return candidate;
}

ViewHolder::ViewHolder(QWidget *parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_placeholder(new QFrame(this))
{
    const int frameWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    m_layout->setSpacing(frameWidth);
    m_layout->setContentsMargins(frameWidth, frameWidth, frameWidth, frameWidth);
    m_placeholder->hide();
}

void ViewHolder::setLastRow(QWidget *row)
{
    m_lastRow = row;
    m_layout->addWidget(row);
    m_layout->addStretch();
}

bool ViewHolder::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) // views came, went or were put in another order, or their rows did
        updateTabOrder();
    return handled;
}

/// Tab goes through the views from top to bottom, and to the row behind them last. Within a view the order stays.
void ViewHolder::updateTabOrder()
{
    QVector<QWidget *> present, wanted;
    QHash<const QWidget *, QVector<QWidget *>> byRow;
    for (QWidget *widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy())
            continue;
        const QWidget *row = widget;
        while (row && row->parentWidget() != this)
            row = row->parentWidget();
        if (!row)
            continue;
        present.append(widget);
        byRow[row].append(widget);
    }
    for (const View *view : viewsInOrder())
        wanted += byRow.value(view);
    wanted += byRow.value(m_lastRow);
    if (wanted.isEmpty() || wanted == present)
        return;
    // All of them take the place in the window that the last has, which was there before any view.
    setTabOrder(wanted.last(), wanted.first());
    for (int i = 1; i < wanted.size(); ++i)
        setTabOrder(wanted[i - 1], wanted[i]);
}

void ViewHolder::addView(View *view)
{
    view->setParent(this);
    m_layout->insertWidget(m_layout->count() - fixedItemCount, view);
    view->show();
}

void ViewHolder::moveView(View *view, int places)
{
    const int place = m_layout->indexOf(view);
    const int wanted = std::clamp(place + places, 0, viewItemCount() - 1);
    if (isDragging() || place < 0 || wanted == place)
        return;
    m_layout->removeWidget(view);
    m_layout->insertWidget(wanted, view);
}

int ViewHolder::viewItemCount() const
{
    return m_layout->count() - fixedItemCount;
}

QVector<View *> ViewHolder::viewsInOrder() const
{
    QVector<View *> views;
    for (int i = 0; i < viewItemCount(); ++i) {
        QWidget *const widget = m_layout->itemAt(i)->widget();
        auto *const view = widget == m_placeholder ? m_draggedView.data() : dynamic_cast<View *>(widget);
        if (view && !view->isDiscarded())
            views.append(view);
    }
    return views;
}

bool ViewHolder::isDragging() const
{
    return m_layout->indexOf(m_placeholder) >= 0;
}

View *ViewHolder::viewAt(const QPoint &position) const
{
    QWidget *widget = childAt(position);
    while (widget && widget->parentWidget() != this)
        widget = widget->parentWidget();
    return dynamic_cast<View *>(widget);
}

void ViewHolder::mousePressEvent(QMouseEvent *event)
{
    View *const view = event->button() == Qt::LeftButton ? viewAt(event->pos()) : nullptr;
    if (isDragging() && !m_draggedView)
        endDrag(); // the view died under the pointer
    if (isDragging() || !view || m_layout->indexOf(view) < 0)
        return QWidget::mousePressEvent(event);
    startDrag(view, event->pos());
}

void ViewHolder::startDrag(View *view, const QPoint &position)
{
    const int place = m_layout->indexOf(view);
    m_layout->setEnabled(false);
    m_placeholder->setFixedHeight(view->height());
    m_layout->removeWidget(view);
    m_layout->insertWidget(place, m_placeholder);
    m_placeholder->show();
    m_layout->setEnabled(true);
    m_layout->update();
    m_pressPosition = position;
    m_viewStartPosition = view->pos();
    m_draggedView = view;
    view->setAutoFillBackground(true);
    view->raise();
}

void ViewHolder::mouseMoveEvent(QMouseEvent *event)
{
    if (!isDragging() || !m_draggedView)
        return QWidget::mouseMoveEvent(event);
    const int y = m_viewStartPosition.y() + event->y() - m_pressPosition.y();
    m_draggedView->move(m_viewStartPosition.x(), y);
    m_layout->activate();
    QVector<QRect> items;
    for (int i = 0; i < viewItemCount(); ++i)
        items.append(m_layout->itemAt(i)->geometry());
    movePlaceholder(dropIndex(items, m_layout->indexOf(m_placeholder), m_layout->spacing(), y));
    Q_EMIT dragMoved(event->pos());
}

void ViewHolder::movePlaceholder(int index)
{
    if (index == m_layout->indexOf(m_placeholder))
        return;
    m_layout->setEnabled(false);
    m_layout->removeWidget(m_placeholder);
    m_layout->insertWidget(index, m_placeholder);
    m_layout->setEnabled(true);
    m_layout->update();
}

void ViewHolder::mouseReleaseEvent(QMouseEvent *event)
{
    if (!isDragging() || event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    endDrag();
}

void ViewHolder::endDrag()
{
    const int place = m_layout->indexOf(m_placeholder);
    m_layout->setEnabled(false);
    m_layout->removeWidget(m_placeholder);
    m_placeholder->hide();
    if (m_draggedView) {
        m_layout->insertWidget(place, m_draggedView);
        m_draggedView->setAutoFillBackground(false);
    }
    m_layout->setEnabled(true);
    m_layout->update();
    m_draggedView = nullptr;
}

} // namespace Tsb
