#pragma once

#include "axis/measuringcursors.h"
#include "axis/timescale.h"
#include "columns/measurement.h"
#include "gui/common/uiinfo.h"
#include "store/datastore.h"

#include <QSet>
#include <QVariant>
#include <QVector>
#include <QWidget>

#include <memory>

class QTimer;
class QVBoxLayout;
class RecordNotes;

namespace Tsb {

class ColorLock;
class Plot;
class TitleButton;
class ViewLayout;

/// The row around one or more plots: title strip with the close button, context menu, left column. Owned by its parent;
/// it leaves through discard() only, since the wish to close it often comes out of its own signal.
class View : public QWidget {
    Q_OBJECT
public:
    explicit View(QWidget *parent = nullptr);
    ~View() override;

    /// Null takes the store away.
    virtual void setDatastore(Datastore *datastore);
    /// The notes that stand beside records; null for none. The base does nothing.
    virtual void setNotes(const RecordNotes *) {}
    virtual void setUpdateTimer(QTimer *timer);
    /// Has the plots draw the cursors, which may die before them. The base does nothing.
    virtual void setMeasuringCursors(const MeasuringCursors *) {}
    /// The figures of all curves of the plots; none in the base.
    virtual QVector<CurveFigures> measure(const MeasuringCursors::Times &) { return {}; }
    /// The settings by which setSettings() makes such a view again; invalid if there is nothing to keep.
    virtual QVariant settings() const;
    /// Unsound parts of the settings count as absent; an invalid value changes nothing.
    virtual void setSettings(const QVariant &settings);

    /// What may hold the view's colour limits equal to others', and may die before it. The base does nothing.
    virtual void setColorLock(ColorLock *) {}

    /// Views that are about to go: what they keep of the store's values may be taken over. The base does nothing.
    virtual void setPredecessors(const QVector<View *> &) {}

    /// Shows the spectra of these ids, in a view that shows spectra; the base does nothing.
    virtual void setVisibleSpectra(QSet<QString> ids);

    /// Whether settings gave it the limits of its values or colours. If not, they are for the caller to fit.
    bool isScaleGiven() const { return m_scaleGiven; }

    /// A temporary view isn't kept in the setup, and its button makes it lasting before it closes it.
    bool isTemporary() const { return m_temporary; }
    void setTemporary(bool on);

    /// Hides the view and deletes it when the event loop runs; until then it counts as closed, and shares no colour
    /// limits.
    void discard();
    bool isDiscarded() const { return m_discarded; }
    /// Brings the geometry of the plots up to date now, also while hidden, so that their widths can be asked.
    void activateLayout();

public Q_SLOTS:
    /// Where the plots begin, in the view's coordinates.
    void setLeftMargin(int width);
    virtual void setTimeScale(TimeScale timescale);
    virtual void setUiInfo(std::shared_ptr<UiInfo> uiInfo);
    virtual void setCurrentRecord(std::shared_ptr<Record> record);
    /// Fits the vertical or the colour scale to the values in sight.
    virtual void fitScale();
    /// Makes a vertical scale, or the limits of colours, that are as they were fitted last, so that nobody touched
    /// them, larger by the values in sight that lie beyond. The base does nothing.
    virtual void growScale() {}

Q_SIGNALS:
    void recordChosen(std::shared_ptr<Record> record);
    void requestPan(TimeScale startTimescale, QPoint delta);
    void requestZoom(double multiplier, int midPixel);
    void requestCloseBelow(Tsb::View *view);
    void requestDisableAutoscroll(bool on);
    void timeCursorChange(bool visible, int pixel);
    void curvesChanged();

protected:
    ViewLayout *viewLayout() const { return m_layout; }
    /// Wires one plot to this view: its wishes go out, the time cursor goes both ways.
    void connectPlot(Plot *plot);
    void setScaleGiven(bool given) { m_scaleGiven = given; }
    /// Takes a fixed height out of settings: held within 16 .. 4096. 0, less, and no number change nothing.
    void restoreHeight(const QVariant &height);
    /// Adds a separator to the context menu and returns it.
    QAction *addSeparator();

private Q_SLOTS:
    void closeClicked();
    void closeBelow();

private:
    QWidget *m_titleStrip;
    ViewLayout *m_layout;
    QVBoxLayout *m_titleLayout;
    TitleButton *m_closeButton;
    bool m_temporary = false;
    bool m_discarded = false;
    bool m_scaleGiven = false;
};

} // namespace Tsb
