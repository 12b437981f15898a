#pragma once

#include "gui/browser/drawing/colormap.h"

#include <QFont>
#include <QFrame>

#include <limits>

class QPainterPath;

/// Shows a colour map with its limits in decades, and lets the user change the limits: dragging either half moves that
/// half's end so that the grabbed value follows the mouse, the wheel moves the end on whose side it turns, and the
/// right button marks a value while it is held. Owner of the limits.
class Colorbar : public QFrame {
    Q_OBJECT
public:
    explicit Colorbar(Qt::Orientation orientation, QWidget *parent = nullptr);

    double lower() const { return m_lower; }
    double upper() const { return m_upper; }
    void setColormap(const Colormap::Map &colormap);
    const Colormap::Map &colormap() const { return m_colormap; }

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

    /// The limits that setLimits takes: 0 to 20 decades apart.
    static bool areUsable(double lower, double upper) { return upper - lower >= 0 && upper - lower <= 20; }

public Q_SLOTS:
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

    void updateLabelFont();
    int length() const;                 ///< of the bar, in pixels
    int along(const QPoint &pos) const; ///< from the bar's low end
    int across(const QPoint &pos) const;
    double valueAt(int p) const { return m_lower + (m_upper - m_lower) * p / length(); }
    void dragTo(const QPoint &pos);
    void drawColors(QPainter &painter, const QRect &area) const;
    void drawHorizontalTicks(QPainter &painter, const QRect &area) const;
    void drawVerticalTicks(QPainter &painter, const QRect &area) const;
    void addDecadeLabels(QPainterPath &path, const QSize &size) const;
    void addMarkLabel(QPainterPath &path, const QSize &size) const;
    double tickPosition(double decade, int size) const;

    double m_lower = 1.0;
    double m_upper = 3.0;
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
