#pragma once

#include <QPointer>
#include <QWidget>

namespace Tsb {

/// The grip at a view's bottom: dragging it sets the fixed height of the target.
class Resizer : public QWidget {
    Q_OBJECT
public:
    explicit Resizer(QWidget *target, QWidget *parent = nullptr);

    void setMinimumTargetHeight(int height) { m_minimumHeight = height; }
    /// -1: none.
    void setMaximumTargetHeight(int height) { m_maximumHeight = height; }
    /// That height, or the nearest one that is allowed; tells nobody.
    void setTargetHeight(int height);
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user let go of the grip.
    void resized();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QPointer<QWidget> m_target;
    QPoint m_pressPosition; ///< global
    bool m_dragging = false;
    bool m_hovered = false;
    int m_startHeight = 0;
    int m_minimumHeight = 32;
    int m_maximumHeight = -1;
};

} // namespace Tsb
