// What the main window's frame consists of: actions, docks, menus, toolbar and shortcuts, and the window's geometry.

#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"
#include "gui/common/logdock.h"
#include "gui/common/recordform.h"
#include "gui/common/recordviews/reportview.h"
#include "gui/frame/mainwindowbase.h"
#include "gui/frame/windowgeometry.h"

#include <QAction>
#include <QMenuBar>
#include <QSettings>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

namespace {

constexpr int settingsVersion = 3;
const QString versionKey = QStringLiteral("version");
const QString geometryKey = QStringLiteral("MainWindow/geometry");

} // namespace

QAction *MainWindowBase::makeAction(const QString &text, const QString &icon, const QString &shortText)
{
    auto *action = new QAction(namedIcon(icon), text, this);
    if (!shortText.isEmpty())
        action->setIconText(shortText);
    return action;
}

void MainWindowBase::setupActions()
{
    m_actions.quit = makeAction(tr("&Quit"), QStringLiteral("exit"));
    m_actions.about = makeAction(tr("About %1...").arg(m_appName));
    m_actions.followLast = makeAction(tr("Select latest record"), QStringLiteral("go-last"), tr("Latest record"));
    m_actions.followLast->setCheckable(true);
    m_actions.followLast->setShortcut(QKeySequence(Qt::Key_End));
    m_actions.followNow = makeAction(tr("Follow current moment"), {}, tr("Time flies"));
    m_actions.followNow->setCheckable(true);
    m_actions.fitTimescale = makeAction(tr("Fit timescale"), QStringLiteral("fit-time"), tr("Fit timescale"));
    m_actions.goToTime = makeAction(tr("Go to time..."));
    m_actions.goToTime->setShortcut(Qt::CTRL + Qt::Key_G);
    m_actions.previousView = makeAction(tr("Previous view"));
    m_actions.previousView->setShortcut(Qt::ALT + Qt::Key_Left);
    m_actions.previousView->setEnabled(false);
    m_actions.inversionStats = makeAction(tr("Show inversion statistics"));

    connect(m_actions.quit, &QAction::triggered, this, &QWidget::close);
    connect(m_actions.about, &QAction::triggered, this, &MainWindowBase::showAboutBox);
    connect(m_actions.followLast, &QAction::toggled, this, &MainWindowBase::setFollowLast);
    connect(m_actions.followNow, &QAction::toggled, m_browser->timeView(), &Tsb::TimeView::setFollowNow);
    connect(m_browser->timeView(), &Tsb::TimeView::followNowChanged, m_actions.followNow, &QAction::setChecked);
    connect(m_actions.fitTimescale, &QAction::triggered, this, &MainWindowBase::fitTimescale);
    connect(m_actions.goToTime, &QAction::triggered, this, &MainWindowBase::showGoToTime);
    connect(m_actions.previousView, &QAction::triggered, m_browser->timeView()->navigator(),
            &Tsb::TimeNavigator::goToPreviousView);
    connect(m_browser->timeView()->navigator(), &Tsb::TimeNavigator::hasPreviousViewChanged, this,
            &MainWindowBase::updatePreviousView);
    connect(m_actions.inversionStats, &QAction::triggered, this, &MainWindowBase::showInversionStats);
}

void MainWindowBase::setupContextActions()
{
    m_browser->timeView()->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_browser->timeView()->addActions({m_actions.fitTimescale, m_actions.followLast});
}

void MainWindowBase::setupDocks()
{
    statusBar(); // made at its first use; without it no status tip is ever seen
    auto *selected = new QDockWidget(tr("Selected record"), this);
    selected->setObjectName(QStringLiteral("currentrecordform"));
    m_recordForm = new RecordForm(m_uiInfo, selected);
    selected->setWidget(m_recordForm);
    m_reportView = new RecordViews::ReportView(m_uiInfo, this);
    addRecordView(m_reportView, {}, Qt::BottomDockWidgetArea);
    const DockPlace own[] = {
        {m_logDock, QStringLiteral("log"), Qt::BottomDockWidgetArea},
        {selected, QStringLiteral("current-record"), Qt::LeftDockWidgetArea},
    };
    m_docks.insert(m_docks.begin(), std::begin(own), std::end(own));
    for (const DockPlace &place : m_docks) {
        place.dock->toggleViewAction()->setIcon(namedIcon(place.icon));
        addDockWidget(place.area, place.dock);
    }
    tabifyDockWidget(m_logDock, m_reportView);
    m_logDock->raise();
    // The log is a strip to glance at, not half of the window.
    resizeDocks({m_logDock}, {fontMetrics().lineSpacing() * 7}, Qt::Vertical);
}

void MainWindowBase::addRecordView(RecordViews::RecordView *view, const QString &icon, Qt::DockWidgetArea area)
{
    m_recordViews.append(view);
    m_docks.push_back({view, icon, area});
}

void MainWindowBase::setupToolbar()
{
    m_toolBar = addToolBar(tr("Toolbar"));
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->addActions({m_actions.followLast, m_actions.followNow, m_actions.fitTimescale});
}

void MainWindowBase::setupMenus()
{
    m_fileMenu = menuBar()->addMenu(tr("&File"));
    m_fileMenu->addAction(m_actions.quit);

    m_timeseriesMenu = new Tsb::PlotMenu(tr("&Timeseries"), this);
    menuBar()->addMenu(m_timeseriesMenu);
    m_timeseriesMenu->addActions({m_actions.followLast, m_actions.followNow, m_actions.fitTimescale, m_actions.goToTime,
                                  m_actions.previousView});
    m_timeseriesMenu->addSeparator();
    m_timeseriesMenu->addActions(m_browser->addPlotActions());
    m_timeseriesMenu->addSeparator();
    m_timeseriesMenu->addActions(m_browser->viewActions());

    m_viewMenu = menuBar()->addMenu(tr("&View"));
    for (const DockPlace &place : m_docks)
        m_viewMenu->addAction(place.dock->toggleViewAction());

    menuBar()->addMenu(tr("&Help"))->addAction(m_actions.about);
}

void MainWindowBase::setupShortcuts()
{
    const struct {
        QKeySequence key;
        JumpCmd command;
    } jumps[] = {{Qt::Key_Right, NextRecord},
                 {Qt::Key_Left, PreviousRecord},
                 {Qt::CTRL + Qt::Key_Right, NextRecordOfMode},
                 {Qt::CTRL + Qt::Key_Left, PreviousRecordOfMode}};
    for (const auto &jump : jumps) {
        auto *shortcut = new QShortcut(jump.key, this, nullptr, nullptr, Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, command = jump.command] { jumpRecord(command); });
    }
}

void MainWindowBase::setCorners()
{
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
}

void MainWindowBase::storeMainWindowState()
{
    if (!m_settings)
        return;
    m_settings->setValue(versionKey, settingsVersion);
    m_settings->setValue(geometryKey, saveGeometry());
}

void MainWindowBase::restoreMainWindowState(bool restoreGeometry)
{
    if (m_settings->value(versionKey, 0).toInt() < settingsVersion) {
        m_settings->clear();
        m_settings->setValue(versionKey, settingsVersion); // at once: a session may end without a close
    }
    if (restoreGeometry)
        restoreReachableGeometry(*this, m_settings->value(geometryKey).toByteArray());
    setCorners(); // restoring may have changed them
}
