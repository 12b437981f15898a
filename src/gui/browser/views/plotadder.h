#pragma once

#include "gui/browser/views/viewkinds.h"
#include "gui/common/uiinfo.h"

#include <QList>
#include <QObject>
#include <QVector>

#include <memory>

class QAction;
class QIcon;
class QMenu;
class QWidget;

namespace Tsb {

class ScatterPlotView;

/// The stack that plots are added to.
class ViewStack {
public:
    /// Takes the view, wires it and gives it the present state.
    virtual void addView(View *view) = 0;
    /// Brings all layouts up to date, so that the sizes of plots can be asked.
    virtual void activateLayouts() const = 0;
    /// In the order of creation, those that are closing left out.
    virtual QVector<View *> views() const = 0;
    virtual void ensureViewVisible(QWidget *widget) = 0;
    /// False when the stack has all the views that it should get from other views' requests.
    virtual bool hasRoom() const = 0;

protected:
    ~ViewStack() = default;
};

/// Adds plots to a stack of views: from its menus, at the request of other views, and all at once for a folder that
/// brings no setup. The menus offer the kinds that there are; a request is met in any case. Main thread only.
class PlotAdder : public QObject {
    Q_OBJECT
public:
    /// The stack and the kinds must outlive it.
    PlotAdder(ViewStack &stack, const ViewKinds &kinds, std::shared_ptr<UiInfo> uiInfo, QObject *parent = nullptr);
    ~PlotAdder() override;

    /// For any menu; it is to be a PlotMenu.
    const QList<QAction *> &actions() const { return m_actions; }
    /// Makes the row with the button "Add plot", which a new view from the menus keeps in sight. Called once; the row
    /// is the caller's.
    QWidget *makeRow();
    /// The operating modes, the total concentration of the first mode's spectra, the first variable, and a spectrogram
    /// view for each mode with all its spectra. Scales are left to be fitted: that reads all the data in sight.
    void addDefaultStack();

public Q_SLOTS:
    // ---- requests: the new view itself comes into sight
    void addOpmodePlot();
    void addFlagPlot(const QString &flagData);
    void addElectrometerPlot(int channelNumber);
    void addDiagnosticPlot(const QString &channelName);

private Q_SLOTS:
    // ---- from the menus
    void addNewOpmodeView();
    void addNewScatterPlotView(int type);
    void addNewSpectrogramView();
    void addNewSpectrogramView(QAction *action);
    void reloadUiSetup();

private:
    void makeActions();
    QAction *addAction(const QString &text, const QIcon &icon);
    View *addSpectrogramView(const QStringList &ids);
    ScatterPlotView *addScatterPlotView(bool withProperties);
    bool mayMeetRequest() const;

    ViewStack &m_stack;
    const ViewKinds &m_kinds;
    std::shared_ptr<UiInfo> m_uiInfo;
    QList<QAction *> m_actions;
    QAction *m_spectrogramAction = nullptr;
    std::unique_ptr<QMenu> m_spectrogramMenu;
    QWidget *m_row = nullptr;
};

} // namespace Tsb
