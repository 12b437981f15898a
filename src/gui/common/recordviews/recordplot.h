#pragma once

#include "gui/common/recordviews/plotreadout.h"
#include "gui/common/selectiontext.h"

#include <QHash>

#include <qwt_interval.h>
#include <qwt_plot.h>

class QwtPlotGrid;

namespace RecordViews {

class PanZoomHelper;

/// The base of the plots of one record. Its colours are those of the palette, its titles plain text. The axes xBottom
/// and yLeft fit the visible items that have the attribute AutoScale, unless the user has panned or zoomed them (see
/// PanZoomHelper) or locked both. Keys do what the mouse does: + and - zoom, Shift with an arrow pans, Home fits, comma
/// and full stop step the read-out through the points, Page Up and Page Down through the series, Esc hides it.
/// The frame of the canvas is coloured while the plot has the focus.
class RecordPlot : public QwtPlot, public SelectionText {
    Q_OBJECT
public:
    explicit RecordPlot(QWidget *parent = nullptr);
    ~RecordPlot() override;

    void setPlainTitle(const QString &title);
    void setPlainAxisTitle(int axis, const QString &title);

    /// Locked axes stay as they are while contents change. The user still moves them, and has them fitted once more.
    bool areAxesLocked() const { return m_areLocked; }
    /// Tells the quantity and the kind of scale that an axis shows. Each subject has its own range: where the user has
    /// moved or locked the axis, it comes back with its subject, and a new subject is fitted by the next replot().
    void setAxisSubject(int axis, const QString &subject);
    /// When the record whose values are shown begins, as the text tells it; empty: none is shown.
    void setRecordMoment(const QString &moment);
    /// That moment, and what valuesText() tells.
    QString selectionText() const override;
    PlotReadout *readout() const { return m_readout; }

    /// For a picture that others see.
    void setFocusFrameShown(bool on);

    /// Small: a plot doesn't hold the window open.
    QSize minimumSizeHint() const override;

    /// Once for all changes: nothing else draws the plot anew. Axes without any contents stay as they are.
    void replot() override;

public Q_SLOTS:
    /// Unlocking fits both axes again.
    void setAxesLocked(bool on);
    void setVerticalAutoscale(bool on);
    void setHorizontalAutoscale(bool on);
    void fitAxes();

protected:
    /// The shown values as text.
    virtual QString valuesText() const { return {}; }
    /// A colour that was chosen for a light ground, as it can be seen here: lighter on a dark ground.
    QColor legible(const QColor &color) const;
    /// What the read-out tells of. Asked when the pointer moves.
    virtual QVector<PlotReadout::Series> readoutSeries() const { return {}; }

    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Range {
        bool isAutomatic;
        QwtInterval ends;
    };
    struct Axis {
        PanZoomHelper *helper = nullptr;
        QString subject;
        bool isAutomatic = true;           ///< the user hasn't panned or zoomed it
        bool isFitted = false;             ///< it has been, to some contents
        QHash<QString, Range> otherRanges; ///< of the subjects before
    };

    Axis &axisOf(int axis) { return axis == yLeft ? m_vertical : m_horizontal; }
    void setupAxis(int axis);
    void setAutoscale(int axis, bool on);
    void noteFitted();
    void takeColors();
    void colorFrame(bool isFocused);
    void takeFonts();
    bool pressPanZoomKey(const QKeyEvent &event);
    bool pressReadoutKey(const QKeyEvent &event);

    QwtPlotGrid *m_grid;
    PlotReadout *m_readout;
    Axis m_horizontal;
    Axis m_vertical;
    QString m_recordMoment;
    bool m_areLocked = false;
};

} // namespace RecordViews
