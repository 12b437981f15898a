#pragma once

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QStringList>
#include <QVector>

#include <functional>

class QLabel;
class QWidget;
class QwtPlot;

namespace RecordViews {

/// Tells the name and the values of the point of a plot that is nearest to the pointer, in a corner of the canvas where
/// it doesn't cover the point. It lies over the canvas, so nothing is drawn anew for it. Belongs to the plot.
class PlotReadout : public QObject {
    Q_OBJECT
public:
    struct Series {
        QString name;
        QColor color;
        QVector<QPointF> points; ///< on the axes xBottom and yLeft; those that aren't finite are passed over
        QStringList pointNames;  ///< shown in place of x, where there are any
    };
    /// What is asked when the pointer moves, and only then.
    using Source = std::function<QVector<Series>()>;

    PlotReadout(QwtPlot *plot, Source source);

    /// What stands behind the values, plain text.
    void setUnits(const QString &x, const QString &y);
    /// Looks again where the pointer is, or the keys were: for new contents or axes. Costs nothing while nothing is
    /// shown.
    void refresh();
    /// Steps through the points of a series from left to right, and through the series, as the pointer does; for keys.
    void stepPoint(int step);
    void stepSeries(int step);
    void hide();
    /// The text that is shown; empty for none.
    QString text() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// A point of the canvas, and where it belongs.
    struct Hit {
        int series = -1;
        int point = -1;
        QPointF pixel;
    };

    void pointAt(const QPointF &pixel);
    /// The points of a series that lie on the canvas, in their order.
    QVector<Hit> hitsOf(const QVector<Series> &all, int series) const;
    static Hit nearest(const QVector<Hit> &hits, const QPointF &pixel);
    void point(const QVector<Series> &all, const Hit &hit);
    void show(const QVector<Series> &all, const Hit &hit);

    QwtPlot *m_plot;
    Source m_source;
    // Both lie on the canvas, which may go away before this.
    QPointer<QLabel> m_label;
    QPointer<QWidget> m_mark;
    QString m_xUnit;
    QString m_yUnit;
    QPointF m_pointer; ///< where the user last pointed, in pixels of the canvas
    Hit m_shown;
};

} // namespace RecordViews
