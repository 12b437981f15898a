#pragma once

#include "axis/valuescale.h"
#include "gui/browser/controls/cursorwrap.h"

#include <QBrush>
#include <QFrame>
#include <QPixmap>

namespace Tsb {

/// The vertical axis to the left of a plot: ticks, label and icon, and a cursor with its value. Owner of its
/// ValueScale. Unless it is read-only a drag pans (vertically) and zooms (horizontally), the wheel zooms about the
/// pointer, and a double click asks for autoscale.
class VerticalScaleWidget : public QFrame {
    Q_OBJECT
public:
    explicit VerticalScaleWidget(QWidget *parent = nullptr);

    const ValueScale &scale() const { return m_scale; }
    double minimum() const { return m_minimum; } ///< the value at the bottom edge, above the maximum on a falling axis
    double maximum() const { return m_maximum; }
    bool isReadOnly() const { return m_readOnly; }
    const QString &label() const { return m_label; }

    QSize sizeHint() const override { return {0, 0}; } ///< the views' layout gives it its place

public Q_SLOTS:
    /// With updateMinMax the range follows the scale.
    void setScale(const ValueScale &scale, bool updateMinMax);
    void updateMinMax();
    /// With updateScale the scale follows the range. A range that holds a not-a-number is invalid.
    void setMinMax(double lower, double upper, bool updateScale);
    void updateScale();
    void setLabel(const QString &label);
    /// A line below the label, and in the tool tip; empty for none.
    void setNotice(const QString &notice);
    /// Values are logarithms: labels show 10 to the power.
    void setAppearLog(bool on);
    void setReadOnly(bool on);
    /// The pixel counts from the widget's top, as the plot beside it sees it.
    void showCursor(bool visible, int pixel);
    void setIcon(const QPixmap &icon);

Q_SIGNALS:
    void scaleChanged(ValueScale scale);
    void minMaxChanged(double lower, double upper);
    void requestAutoscale();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void applyPalette();
    void invalidateCache();
    void renderCache(const QSize &pixmapSize, qreal ratio);
    /// Ticks and title, for a painter whose origin is the contents'.
    void drawScale(QPainter &painter);
    /// Draws the ticks and returns the width of the widest label.
    int drawTicks(QPainter &painter) const;
    void tellTitle();
    QString title() const;
    void drawTitle(QPainter &painter, int freeWidth) const;
    void drawCursor(QPainter &painter) const;
    double heightAt(int widgetY) const; ///< pixels above the contents' bottom edge

    ValueScale m_scale;
    double m_minimum = 0.0;
    double m_maximum = 100.0;
    bool m_dragging = false;
    EndlessDrag m_drag{EndlessDrag::TakesRepeats};
    ValueScale m_dragStartScale;
    QString m_label;
    QString m_notice;
    int m_lineHeight = 0;
    int m_numbersWidth = 0; ///< of the widest label in the cached picture
    bool m_appearLog = false;
    bool m_cacheDirty = true;
    bool m_rangeValid = true;
    bool m_readOnly = true;
    int m_cursorPixel = 0;
    bool m_cursorVisible = false;
    QBrush m_cursorBrush;
    QPixmap m_cachedPixmap;
    QPixmap m_icon;
};

} // namespace Tsb
