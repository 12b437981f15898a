#pragma once

#include <QPointer>
#include <QVector>
#include <QWidget>

class QFrame;
class QVBoxLayout;

namespace Tsb {

class View;

/// The place that a dragged view's top at height y asks for, among the items of which the one at `placeholderIndex`
/// keeps its place free. Items are the geometries in the order of the layout.
int dropIndex(const QVector<QRect> &items, int placeholderIndex, int spacing, int y);

/// Holds the views one below the other and lets the user put them in another order by dragging. Behind the views it has
/// two items of its own: the row that adds plots and a stretch.
class ViewHolder : public QWidget {
    Q_OBJECT
public:
    explicit ViewHolder(QWidget *parent = nullptr);

    QVBoxLayout *viewLayout() const { return m_layout; }
    /// Appends the row behind the views; called once.
    void setLastRow(QWidget *row);
    /// Appends a view to the views.
    void addView(View *view);
    /// By that many places, down if positive; to the end at most. Nothing while a view is being dragged.
    void moveView(View *view, int places);
    /// The views in the order of display, one that is being dragged at the place kept for it; those that are closing
    /// are left out.
    QVector<View *> viewsInOrder() const;

Q_SIGNALS:
    /// A view is being dragged; the pointer is at that place of the holder.
    void dragMoved(const QPoint &position);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    static constexpr int fixedItemCount = 2;

    bool isDragging() const;
    View *viewAt(const QPoint &position) const;
    void startDrag(View *view, const QPoint &position);
    void endDrag();
    void movePlaceholder(int index);
    int viewItemCount() const;
    void updateTabOrder();

    QVBoxLayout *m_layout;
    QWidget *m_lastRow = nullptr;
    QPointer<View> m_draggedView;
    QPoint m_pressPosition;
    QPoint m_viewStartPosition;
    QFrame *m_placeholder; ///< in the layout during a drag, where the view is to stand: other views may come and go
};

} // namespace Tsb
