#pragma once

#include "gui/browser/controls/colorlimits.h"
#include "gui/browser/drawing/colormap.h"

#include <QFont>
#include <QFrame>

#include <limits>
#include <vector>

/// Shows a colour map with its limits in decades, and lets the user change the limits: dragging either half moves that
/// half's end so that the grabbed value follows the mouse, the wheel moves the end on whose side it turns, and the
/// right button marks a value while it is held.
class Colorbar : public QFrame {
    Q_OBJECT
public:
    /// A bar with limits of its own, 1 and 3.
    explicit Colorbar(Qt::Orientation orientation, QWidget *parent = nullptr);
    /// Shows and sets those limits, which must live as long as the bar.
    Colorbar(Qt::Orientation orientation, Tsb::ColorLimits &limits, QWidget *parent = nullptr);

    double lower() const { return m_limits->lower(); }
    double upper() const { return m_limits->upper(); }
    void setColormap(const Colormap::Map &colormap);
    const Colormap::Map &colormap() const { return m_colormap; }

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Nothing for limits that aren't 0 to 20 decades apart.
    void setLimits(double lower, double upper);
    /// A value in decades to be labelled instead of the decades; not a number for none.
    void markValue(double value);

Q_SIGNALS:
    void limitsChanged(double lower, double upper);
    void doubleClicked();
    /// In decades; not a number when the mark goes.
    void mouseMarkedValue(double value);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    enum DragMode { DragUpper = 0, DragLower = 1, DragBoth = 2 };
    struct Label {
        QPointF start; ///< of its base line
        QString text;
    };

    void updateLabelFont();
    int length() const;                 ///< of the bar, in pixels
    int along(const QPoint &pos) const; ///< from the bar's low end
    int across(const QPoint &pos) const;
    double valueAt(int p) const { return lower() + (upper() - lower()) * p / length(); }
    void dragTo(const QPoint &pos);
    void drawColors(QPainter &painter, const QRect &area) const;
    void drawHorizontalTicks(QPainter &painter, const QRect &area) const;
    void drawVerticalTicks(QPainter &painter, const QRect &area) const;
    std::vector<Label> decadeLabels(const QSize &size) const;
    std::vector<Label> markLabel(const QSize &size) const;
    double tickPosition(double decade, int size) const;

    Tsb::ColorLimits *m_limits;
    double m_pressValue = 0;
    double m_valuePerPixel = 0;
    double m_startUpper = 0;
    double m_startLower = 0;
    QPoint m_pressPoint;
    bool m_dragging = false;
    int m_dragMode = DragUpper;
    Qt::Orientation m_orientation;
    Colormap::Map m_colormap;
    QFont m_labelFont;
    double m_markedValue = std::numeric_limits<double>::quiet_NaN();
};
