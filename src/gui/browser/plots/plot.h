#pragma once

#include "axis/measuringcursors.h"
#include "axis/pixelrange.h"
#include "axis/timescale.h"
#include "columns/measurement.h"
#include "gui/browser/drawing/plotimage.h"
#include "gui/common/selectiontext.h"
#include "store/datastore.h"

#include <QFrame>
#include <QPointer>
#include <QVector>

#include <memory>

class QTimer;

namespace Tsb {

class UpdateDelayer;

/// A flag of Plot::updateRecord() beside those of the store, which doesn't send it: a change that shows in every plot.
constexpr int otherChange = 8;

/// The base of every strip in the browser: draws a time range of the store into a cached image, keeps the image up to
/// date by moving it and drawing only new and changed columns, and turns mouse and keys into record choices and
/// requests to the time axis. Main thread only. The store may die before the plot.
class Plot : public QFrame, public SelectionText {
    Q_OBJECT
public:
    explicit Plot(QWidget *parent = nullptr);
    ~Plot() override;

    virtual void setDatastore(Datastore *datastore);
    /// Whether changes of the store are heard of. A caller that changes a great many records at once turns that
    /// off meanwhile, and tells the plots that show the change itself.
    void setListening(bool on);
    /// The whole image is out of date.
    void requestFullRedraw();
    /// The timer that paces repaints; owned by the caller.
    virtual void setUpdateTimer(QTimer *timer);
    /// The measuring cursors to draw; null for none. They may die before the plot.
    void setMeasuringCursors(const MeasuringCursors *cursors);
    /// What the plot's curves have at the cursors and between them, in drawing order. The base has no curve.
    virtual QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors);

    Datastore *datastore() const { return m_datastore; }
    const TimeScale &timeScale() const { return m_image.timeScale(); }
    const std::shared_ptr<Record> &currentRecord() const { return m_currentRecord; }
    /// The cached image: logical pixels of the contents rectangle, device pixel ratio 1. Hold no copy while drawing
    /// goes on.
    const QImage &image() const { return m_image.image(); }
    /// Draws the picture of paintEvent inside the contents rectangle, for a painter whose origin is the widget's.
    void paintContents(QPainter &painter);
    /// The selected record's begin, and what valuesText() tells of it.
    QString selectionText() const override;

public Q_SLOTS:
    virtual void setTimeScale(TimeScale timescale);
    virtual void setCurrentRecord(std::shared_ptr<Record> record);
    /// Columns and rows of the cursors are in widget coordinates.
    void setTimeCursor(bool visible, int pixel);
    void setValueCursor(bool visible, int pixel);
    void updateRecord(int index, const std::shared_ptr<Record> &record, int flags);
    void removeRecord(int index, std::shared_ptr<Record> record);

Q_SIGNALS:
    void recordChosen(std::shared_ptr<Record> record);
    void requestPan(TimeScale startTimescale, QPoint delta);
    void requestZoom(double multiplier, int midPixel);
    void requestDisableAutoscroll(bool on);
    void timeCursorChanged(bool visible, int pixel);
    void valueCursorChanged(bool visible, int pixel);
    /// The plot has other curves than before.
    void curvesChanged();

protected:
    /// What the plot shows of one record, as text.
    virtual QString valuesText(const Record &record) const;

    // ---- drawing. In the image, column and row 0 are the top left of the contents rectangle.
    /// Draws the columns first .. last - 1 of the image and no other: the painter's clip doesn't bind direct pixel
    /// writes. The painter's device is the image; bits of it may be written.
    virtual void drawRange(QPainter &painter, int first, int last);
    virtual void drawAll(QPainter &painter);
    /// Fills the columns with white.
    virtual void clearRange(QPainter &painter, int first, int last);
    /// Drawn over the image on each paint, in widget coordinates, clipped to the contents. The base marks the current
    /// record.
    virtual void drawOverlay(QPainter &painter);
    virtual void drawUnderlay(QPainter &painter);
    virtual void checkImageSize();
    /// These columns of the image are out of date.
    void requestRedraw(const PixelRange &columns);
    /// Told of every change of the store that is heard of, to keep values beside it.
    virtual void noteUpdated(int index, const std::shared_ptr<Record> &record, int flags);
    /// The columns that a change concerns; empty for a change that doesn't show.
    virtual PixelRange rangeOfUpdatedRecord(int index, const std::shared_ptr<Record> &record, int flags);
    virtual PixelRange rangeOfRemovedRecord(int index, const std::shared_ptr<Record> &record);
    /// The record nearest to a moment (direction 0), the last that ends before it (below 0), or the first that doesn't
    /// begin before it (above 0); null if there is none.
    virtual std::shared_ptr<Record> findRecord(RecordTime tick, int direction);

    /// Columns from begin to end of the record, widened by `margin` on each side.
    PixelRange spanOf(const Record &record, int margin) const;
    int redrawMargin() const { return m_redrawMargin; }
    void setRedrawMargin(int pixels) { m_redrawMargin = pixels; }
    bool isTimeCursorVisible() const { return m_timeCursorVisible; }
    int timeCursorPixel() const { return m_timeCursorPixel; }
    bool isValueCursorVisible() const { return m_valueCursorVisible; }
    int valueCursorPixel() const { return m_valueCursorPixel; }

    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void updateImage();
    void endPan();
    void moveMeasuringCursors();
    void drawMeasuringCursors(QPainter &painter);
    void hideCursors();

    void chooseRecordAt(int x, bool sameOpmode);
    void chooseRecordRelative(int step, bool sameOpmode);
    void chooseRecordBeyondTicks(std::int64_t ticks, bool sameOpmode);

    QPointer<Datastore> m_datastore;
    PlotImage m_image;
    TimeScale m_dragStartScale;
    bool m_panning = false;
    bool m_focusMarked = false; ///< the frame shows the focus, which came by a key
    QPoint m_pressPoint;
    int m_redrawMargin = 1;
    std::shared_ptr<Record> m_currentRecord;
    UpdateDelayer *m_updateDelayer = nullptr; ///< a child; null until a timer is set
    QPointer<const MeasuringCursors> m_measuringCursors;
    MeasuringCursors::Times m_drawnCursors;
    bool m_timeCursorVisible = false;
    int m_timeCursorPixel = 0;
    bool m_valueCursorVisible = false;
    int m_valueCursorPixel = 0;
};

} // namespace Tsb
