#pragma once

#include "axis/measuringcursors.h"
#include "axis/timescale.h"
#include "columns/measurement.h"
#include "gui/browser/views/colorlock.h"
#include "gui/browser/views/plotadder.h"
#include "gui/browser/views/scalefitting.h"
#include "gui/browser/views/viewkinds.h"
#include "gui/common/pictures/picturefile.h"
#include "gui/common/recordnotes.h"
#include "gui/common/uiinfo.h"
#include "store/datastore.h"

#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <memory>

class PictureCommands;
class QAction;
class QScrollArea;

namespace Tsb {

class ArrangingCommands;
class Header;
class MeasuringCommands;
class TimeNavigator;
class TimeView;
class View;
class ViewHolder;

/// A stack of views under one time axis. Owns the views and the timer that paces their repaints, hands the selected
/// record and the time cursor to all, and writes and reads the list of views. Main thread only.
class TimeSeriesBrowser : public QWidget, private ViewStack {
    Q_OBJECT
public:
    static constexpr int greatestViewCount =
        200; ///< of a setup, and at the request of others; further ones are left out

    explicit TimeSeriesBrowser(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr,
                               std::vector<ViewKind> kinds = standardViewKinds());
    ~TimeSeriesBrowser() override;

    /// Hands the store to every view; it may die before the browser. Null takes it away. Measuring cursors go with the
    /// former store.
    void setDatastore(Datastore *datastore);
    /// Whether the cursors stay nonetheless, as where the same data are read again.
    void setKeepingCursors(bool on) { m_keepsCursors = on; }
    /// Hands the notes to every view, which mark the records that have one; they may die before the browser. Null for
    /// none.
    void setNotes(const RecordNotes *notes);
    /// Whether all plots hear of changes of the store, see Plot::setListening.
    void setListening(bool on);
    /// See ScaleFitting::setGrowing.
    void setGrowing(bool on) { m_scales->setGrowing(on); }
    /// Draws all plots anew. Changes that came one after the other may have left traces between their columns.
    void redrawPlots();
    /// The lasting views in the order of display: a list of maps with "type" and, for a view that has any, "settings".
    QVariant setup() const;
    /// Puts other views in the place of all, which go at once: not for signals of a view. Unsound parts of the value
    /// count as absent.
    void setSetup(const QVariant &setup);

    /// The width of the column before the plots, where scales and titles stand.
    int leftColumnWidth() const;
    void setLeftColumnWidth(int width);
    /// How many pixels of the stack are scrolled out of sight at the top.
    int scrolledHeight() const;
    /// Scrolls that far, or to the end, once the layouts are settled.
    void scrollTo(int height);

    /// The actions that add plots, for menus of the main window. Their menu is to be a PlotMenu.
    const QList<QAction *> &addPlotActions() const;
    /// The actions that concern all views.
    const QList<QAction *> &viewActions() const { return m_viewActions; }
    /// The menu that puts the view with the focus elsewhere, or makes it higher or lower.
    QAction *arrangingAction() const;
    /// The actions of measuring, with their keys.
    const QList<QAction *> &measuringActions() const;
    MeasuringCursors *measuringCursors() { return &m_cursors; }
    /// The figures of all open views' curves in the order of display, each curve once.
    QVector<CurveFigures> measure() const;
    TimeScale timeScale() const;
    TimeView *timeView() const;
    QVector<View *> views() const override;
    /// What a picture of the stack holds, see stackDrawing().
    PictureFile::Drawing drawing();
    /// Its frame alone, see stackFrame().
    QRect pictureFrame() const;
    bool hasViews() const { return !views().isEmpty(); }
    const std::shared_ptr<Record> &currentRecord() const { return m_currentRecord; }

    /// Takes the view, wires it and gives it the present state.
    void addView(View *view) override;
    /// The views of a folder that brings none, fitted: the operating modes, the total concentration of the first mode's
    /// spectra, the first variable, and a spectrogram view for each mode with all its spectra.
    void addDefaultStack();
    /// Shows that span, which is all of the data, and goes on to do so at other widths until the user zooms or pans.
    void fitTimescale(RecordTime begin, RecordTime end);
    /// Fits the scales of those views that a setup told no limits to the values in sight: a setup that is written by
    /// hand needn't know them.
    void fitUntoldScales();

public Q_SLOTS:
    /// Nothing for a view that isn't of this browser.
    void closeView(Tsb::View *view);
    void closeTempViews();
    void closeAllViews();
    /// That view and all that stand below it.
    void closeViewsBelow(Tsb::View *view);
    void addOpmodePlot();
    void addFlagPlot(const QString &flagData);
    void addElectrometerPlot(int channelNumber);
    void addDiagnosticPlot(const QString &channelName);
    void ensureViewVisible(QWidget *widget) override;
    /// Scrolls the axis just enough to show the record, unless that is disabled, and hands the record to all views.
    void selectRecord(std::shared_ptr<Record> record);
    /// The same for a record that came in and was not chosen: the axis runs along, and leaves nothing to go back to.
    void followRecord(std::shared_ptr<Record> record);
    void setDisableAutoscroll(bool on);
    /// Fits the scales of all views to the values in sight.
    void allFitScale();
    /// Gives all spectrograms that colour map, each on its background.
    void setColormap(const QString &name);

Q_SIGNALS:
    void recordChosen(std::shared_ptr<Record> record);
    void timeCursorChanged(bool visible, int value);
    /// Other curves, or other values in them.
    void curvesChanged();
    /// The user wants the records between these moments as a table.
    void spanExportRequested(RecordTime begin, RecordTime end);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void viewDestroyed(QObject *object);
    void scrollToView(QWidget *widget);
    void timeViewFollowNowChanged(bool on);
    void setTimeCursor(bool visible, int value);

private:
    using Scroll = void (TimeNavigator::*)(RecordTime begin, RecordTime end);

    void makeViewActions();
    void updateViewActions();
    void connectView(View *view);
    void activateLayouts() const override;
    bool hasRoom() const override;
    void zoom(int step);
    RecordTime placeForCursor(int which) const;
    void makeCurrent(const std::shared_ptr<Record> &record, Scroll bring);

    std::shared_ptr<UiInfo> m_uiInfo;
    ViewKinds m_kinds;
    Header *m_header;
    QScrollArea *m_scrollArea;
    ViewHolder *m_viewHolder;
    PlotAdder *m_plotAdder;
    ScaleFitting *m_scales;
    std::vector<View *> m_views; ///< in the order of creation; children of the holder
    QPointer<Datastore> m_datastore;
    QPointer<const RecordNotes> m_notes;
    std::shared_ptr<Record> m_currentRecord;
    QTimer m_updateTimer;
    MeasuringCursors m_cursors;
    ColorLock m_colorLock;
    MeasuringCommands *m_measuring;
    ArrangingCommands *m_arranging;
    QList<QAction *> m_viewActions;
    PictureCommands *m_pictures;
    bool m_timeCursorVisible = false;
    int m_timeCursorPixel = 0;
    bool m_disableAutoscroll = false;
    bool m_keepsCursors = false;
};

} // namespace Tsb
