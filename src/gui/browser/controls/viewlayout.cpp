#include "gui/browser/controls/viewlayout.h"

#include <QWidget>
#include <QWidgetItem>

#include <algorithm>

namespace Tsb {

ViewGeometry viewGeometry(const QSize &size, int spacing, int leftMargin, const QVector<ViewRow> &rows)
{
    const int width = size.width();
    const int titleWidth = std::min(ViewLayout::titleWidth, width);
    const int contentX = std::min(titleWidth + spacing, width);
    const int leftWidth = std::max(0, std::min(leftMargin - contentX - spacing, width - contentX));
    const int rightX = std::min(leftWidth + contentX + spacing, width);
    const int rightWidth = std::max(0, width - rightX);
    const int fullWidth = std::max(0, width - contentX);

    int singleSum = 0, sharedLeft = 0;
    for (const ViewRow &row : rows) {
        if (row.shown && row.shared)
            ++sharedLeft;
        else if (row.shown)
            singleSum += row.hint + spacing;
    }
    int remaining = std::max(0, size.height() - singleSum + spacing);

    ViewGeometry geometry;
    geometry.title = QRect(0, 0, titleWidth, size.height());
    int y = 0;
    for (const ViewRow &row : rows) {
        QRect left, right;
        if (row.shown) {
            int height = row.hint;
            if (row.shared) {
                height = std::max(0, remaining / sharedLeft - spacing);
                remaining = std::max(0, remaining - height - spacing);
                --sharedLeft;
                left = QRect(contentX, y, leftWidth, height);
                right = QRect(rightX, y, rightWidth, height);
            } else {
                left = QRect(contentX, y, fullWidth, height);
            }
            y += height + spacing;
        }
        geometry.left.append(left);
        geometry.right.append(right);
    }
    return geometry;
}

ViewLayout::ViewLayout(QWidget *parent) : QLayout(parent) {}

ViewLayout::~ViewLayout() = default;

ViewLayout::Item ViewLayout::wrap(QWidget *widget)
{
    if (!widget)
        return nullptr;
    addChildWidget(widget);
    ++m_itemCount;
    return std::make_unique<QWidgetItem>(widget);
}

void ViewLayout::setTitleItem(QWidget *widget)
{
    if (m_titleItem)
        --m_itemCount;
    m_titleItem = wrap(widget);
    invalidate();
}

void ViewLayout::insertRow(int index, QWidget *left, QWidget *right)
{
    Row row;
    row.left = wrap(left);
    row.right = wrap(right);
    m_rows.insert(m_rows.begin() + std::clamp(index, 0, rowCount()), std::move(row));
    invalidate();
}

void ViewLayout::removeRow(int index)
{
    const auto row = m_rows.begin() + index;
    m_itemCount -= int(row->left != nullptr) + int(row->right != nullptr);
    m_rows.erase(row);
    invalidate();
}

QPair<QWidget *, QWidget *> ViewLayout::rowWidgets(int index) const
{
    const Row &row = m_rows[std::size_t(index)];
    return {row.left ? row.left->widget() : nullptr, row.right ? row.right->widget() : nullptr};
}

void ViewLayout::setLeftMargin(int margin)
{
    if (m_leftMargin == margin)
        return;
    m_leftMargin = margin;
    invalidate();
}

void ViewLayout::addItem(QLayoutItem *item)
{
    m_rows.push_back({Item(item), nullptr});
    ++m_itemCount;
    invalidate();
}

QLayoutItem *ViewLayout::itemAt(int index) const
{
    if (m_titleItem && index-- == 0)
        return m_titleItem.get();
    for (const Row &row : m_rows) {
        if (row.left && index-- == 0)
            return row.left.get();
        if (row.right && index-- == 0)
            return row.right.get();
    }
    return nullptr;
}

QLayoutItem *ViewLayout::takeAt(int index)
{
    QLayoutItem *const wanted = index < 0 ? nullptr : itemAt(index);
    if (!wanted)
        return nullptr;
    --m_itemCount;
    invalidate();
    if (m_titleItem.get() == wanted)
        return m_titleItem.release();
    for (auto row = m_rows.begin();; ++row) {
        if (row->right.get() == wanted)
            return row->right.release();
        if (row->left.get() != wanted)
            continue;
        QLayoutItem *const item = row->left.release();
        if (!row->right)
            m_rows.erase(row);
        return item;
    }
}

void ViewLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    QVector<ViewRow> rows;
    for (const Row &row : m_rows) {
        ViewRow description;
        description.shared = row.right != nullptr;
        description.shown = (row.left && !row.left->isEmpty()) || (row.right && !row.right->isEmpty());
        description.hint = row.left ? row.left->sizeHint().height() : 0;
        rows.append(description);
    }
    const ViewGeometry geometry = viewGeometry(rect.size(), std::max(0, spacing()), m_leftMargin, rows);
    if (m_titleItem)
        m_titleItem->setGeometry(geometry.title);
    for (int i = 0; i < rowCount(); ++i) {
        const Row &row = m_rows[std::size_t(i)];
        if (row.left)
            row.left->setGeometry(geometry.left[i]);
        if (row.right)
            row.right->setGeometry(geometry.right[i]);
    }
}

} // namespace Tsb
