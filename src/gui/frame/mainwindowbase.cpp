#include "gui/frame/mainwindowbase.h"

#include "gui/browser/controls/gototimedialog.h"
#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/commentview.h"
#include "gui/common/diagnosticstatusdockwidget.h"
#include "gui/common/focusreturn.h"
#include "gui/common/iconhelp.h"
#include "gui/common/inversionstatistics.h"
#include "gui/common/logbox.h"
#include "gui/common/logdock.h"
#include "gui/common/recordform.h"
#include "gui/frame/abouttext.h"
#include "gui/frame/busymessage.h"
#include "gui/frame/docklayout.h"
#include "gui/frame/framedocks.h"
#include "gui/frame/measuringdock.h"
#include "gui/frame/menumnemonics.h"
#include "gui/frame/opencomments.h"
#include "gui/frame/recordsteps.h"
#include "gui/frame/windowgeometry.h"
#include "gui/frame/windowkeys.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFont>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

namespace {

constexpr int settleTime = 500;                          // ms
constexpr int messageTime = 5000;                        // ms
constexpr std::int64_t firstTicksPerPixel = 100'000'000; // 10 s
constexpr int firstOriginPixel = 10;

} // namespace

MainWindowBase::MainWindowBase(QWidget *parent) : QMainWindow(parent), m_logger(QStringLiteral("gui"))
{
    QFont::insertSubstitutions(QStringLiteral("Monospace"),
                               {QStringLiteral("Consolas"), QStringLiteral("Lucida Console")});
    setObjectName(QStringLiteral("MainWindow"));
    setDockNestingEnabled(true);
    setAnimated(false); // each step would draw all plots, and go on in a layout that is restored meanwhile
    setDockCorners(*this);

    // Before all else, so that everything that follows can log.
    m_uiInfo = std::make_shared<UiInfo>();
    m_docks = new FrameDocks(m_uiInfo, this);
    connect(new LogBox(this), &LogBox::newEntry, this, &MainWindowBase::addLogEntry);

    m_shown = new ShownRecord(m_uiInfo, this);
    connect(m_shown, &ShownRecord::changed, this, &MainWindowBase::shownRecordChanged);
    connect(m_shown, &ShownRecord::contentsChanged, this, &MainWindowBase::queueViewUpdate);
    m_browser = new Tsb::TimeSeriesBrowser(m_uiInfo, this);
    setCentralWidget(m_browser);
    connect(m_browser, &Tsb::TimeSeriesBrowser::recordChosen, this, &MainWindowBase::showRecord);
    connect(m_browser->timeView(), &Tsb::TimeView::doubleClicked, this, &MainWindowBase::fitTimescale);
    setupShortcuts();
    new FocusReturn(this);
    new MenuMnemonics(this);
}

MainWindowBase::~MainWindowBase() = default;

void MainWindowBase::setAboutInfo(const QString &name, const QString &description)
{
    m_appName = name;
    m_aboutText = aboutText(name, description);
}

void MainWindowBase::setSettings(std::unique_ptr<QSettings> settings)
{
    m_settings = std::move(settings);
}

std::shared_ptr<Datastore> MainWindowBase::currentDatastoreFor(int)
{
    return nullptr;
}

void MainWindowBase::addLogEntry(Log::Entry entry)
{
    m_docks->log()->addEntry(entry);
}

void MainWindowBase::showAboutBox()
{
    QMessageBox::about(this, tr("About %1").arg(m_appName), m_aboutText);
}

void MainWindowBase::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!std::exchange(m_wasShown, true))
        sizeDocks(*this); // not before: only now the window has its size
    else if (!event->spontaneous())
        leaveRoomForCentre(*this);
}

void MainWindowBase::closeEvent(QCloseEvent *event)
{
    saveComments();
    storeMainWindowState();
    QCoreApplication::processEvents(QEventLoop::AllEvents, settleTime); // queued work may settle
    event->accept();
}

// ---- layout

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
    m_actions.quit->setShortcut(Qt::CTRL + Qt::Key_Q);
    m_actions.about = makeAction(tr("About %1...").arg(m_appName));
    m_actions.followLast = makeAction(tr("Select latest record"), QStringLiteral("go-last"), tr("Latest record"));
    m_actions.followLast->setCheckable(true);
    m_actions.followLast->setShortcut(QKeySequence(Qt::Key_End));
    m_actions.followNow = makeAction(tr("Follow current moment"), {}, tr("Time flies"));
    m_actions.followNow->setCheckable(true);
    m_actions.fitTimescale = makeAction(tr("Fit timescale"), QStringLiteral("fit-time"), tr("Fit timescale"));
    m_actions.fitTimescale->setShortcut(Qt::CTRL + Qt::Key_0);
    m_actions.goToTime = makeAction(tr("Go to time..."));
    m_actions.goToTime->setShortcut(Qt::CTRL + Qt::Key_G);
    m_actions.previousView = makeAction(tr("Previous view"));
    m_actions.previousView->setShortcut(Qt::ALT + Qt::Key_Left);
    m_actions.previousView->setEnabled(false);
    m_actions.inversionStats = makeAction(tr("Show inversion statistics"));
    m_steps = new RecordSteps(m_shown, this);
    m_keys = new WindowKeys(this);

    connect(m_actions.quit, &QAction::triggered, this, &QWidget::close);
    connect(m_actions.about, &QAction::triggered, this, &MainWindowBase::showAboutBox);
    connect(m_actions.followLast, &QAction::toggled, this, &MainWindowBase::setFollowLast);
    connect(m_shown, &ShownRecord::followingChanged, m_actions.followLast, &QAction::setChecked);
    connect(m_actions.followNow, &QAction::toggled, m_browser->timeView(), &Tsb::TimeView::setFollowNow);
    connect(m_browser->timeView(), &Tsb::TimeView::followNowChanged, m_actions.followNow, &QAction::setChecked);
    connect(m_actions.fitTimescale, &QAction::triggered, this, &MainWindowBase::fitTimescale);
    connect(m_actions.goToTime, &QAction::triggered, this, &MainWindowBase::showGoToTime);
    const Tsb::TimeNavigator *navigator = m_browser->timeView()->navigator();
    connect(m_actions.previousView, &QAction::triggered, navigator, &Tsb::TimeNavigator::goToPreviousView);
    connect(navigator, &Tsb::TimeNavigator::hasPreviousViewChanged, this, &MainWindowBase::updatePreviousView);
    connect(m_steps, &RecordSteps::nothingFound, statusBar(),
            [this](const QString &text) { statusBar()->showMessage(text, messageTime); });
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
    m_docks->add(new MeasuringDock(m_browser, this), {});
    m_docks->makeAll();
    m_comments = new OpenComments(m_docks->form(), m_docks->commentList(), m_browser, this);
    // Else the next record would take the line away in the middle of a word.
    connect(m_docks->form(), &RecordForm::commentTyped, this, &MainWindowBase::implicitDisableFollowLast);
    connect(m_docks->commentList(), &CommentView::commentSelected, this, &MainWindowBase::commentSelected);
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

    auto *timeseriesMenu = new Tsb::PlotMenu(tr("&Timeseries"), this);
    menuBar()->addMenu(timeseriesMenu);
    timeseriesMenu->addActions({m_actions.followLast, m_actions.followNow, m_actions.fitTimescale, m_actions.goToTime,
                                m_actions.previousView});
    timeseriesMenu->addSeparator();
    timeseriesMenu->addActions(m_steps->actions());
    timeseriesMenu->addSeparator();
    timeseriesMenu->addActions(m_browser->measuringActions());
    timeseriesMenu->addSeparator();
    timeseriesMenu->addActions(m_browser->addPlotActions());
    timeseriesMenu->addSeparator();
    timeseriesMenu->addActions(m_browser->viewActions());

    m_viewMenu = menuBar()->addMenu(tr("&View"));
    m_viewMenu->addActions(m_docks->toggleActions());
    m_viewMenu->addSeparator();
    m_viewMenu->addActions({m_browser->arrangingAction(), m_keys->filterAction(), m_keys->fullScreenAction()});

    m_helpMenu = menuBar()->addMenu(tr("&Help"));
    m_helpMenu->addActions({m_keys->pageAction(), m_actions.about});
}

void MainWindowBase::setupShortcuts()
{
    const struct {
        QKeySequence key;
        JumpCmd command;
        QString effect;
    } jumps[] = {{Qt::Key_Right, NextRecord, tr("Next record")},
                 {Qt::Key_Left, PreviousRecord, tr("Previous record")},
                 {Qt::CTRL + Qt::Key_Right, NextRecordOfMode, tr("Next record of the same mode")},
                 {Qt::CTRL + Qt::Key_Left, PreviousRecordOfMode, tr("Previous record of the same mode")}};
    for (const auto &jump : jumps) {
        auto *shortcut = new QShortcut(jump.key, this, nullptr, nullptr, Qt::WindowShortcut);
        shortcut->setWhatsThis(jump.effect);
        connect(shortcut, &QShortcut::activated, this, [this, command = jump.command] { jumpRecord(command); });
    }
}

void MainWindowBase::storeMainWindowState()
{
    if (m_settings)
        storeWindowGeometry(*m_settings, *this);
}

void MainWindowBase::restoreMainWindowState(bool restoreGeometry)
{
    forgetOlderSettings(*m_settings);
    if (restoreGeometry)
        restoreWindowGeometry(*m_settings, *this);
    setDockCorners(*this); // restoring may have changed them
}

// ---- the shown record

const std::shared_ptr<Record> &MainWindowBase::shownRecord() const
{
    return m_shown->record();
}

DiagnosticStatusDockWidget *MainWindowBase::statusDock() const
{
    return m_docks->status();
}

RecordViews::ReportView *MainWindowBase::reportView() const
{
    return m_docks->report();
}

const std::shared_ptr<Datastore> &MainWindowBase::datastore() const
{
    return m_shown->datastore();
}

void MainWindowBase::showRecord(std::shared_ptr<Record> record)
{
    m_shown->show(record);
}

void MainWindowBase::showRecordDelayed(std::shared_ptr<Record> record)
{
    m_shown->showDelayed(record);
}

void MainWindowBase::updateShownRecord()
{
    m_shown->showDelayedNow();
}

void MainWindowBase::jumpRecord(JumpCmd command)
{
    m_shown->jump(command);
}

bool MainWindowBase::isFollowingLast() const
{
    return m_shown->isFollowing();
}

void MainWindowBase::setFollowLast(bool on)
{
    m_shown->setFollowing(on);
}

void MainWindowBase::implicitDisableFollowLast()
{
    m_shown->setFollowing(false);
}

void MainWindowBase::recordUpdated(int, std::shared_ptr<Record> record, int flags)
{
    if (statusDock() && (flags & RecordCameIn) != 0)
        statusDock()->addRecord(record);
    m_shown->recordUpdated(record, flags);
}

void MainWindowBase::shownRecordChanged(const std::shared_ptr<Record> &record, ShownRecord::Mover mover)
{
    if (record)
        m_browser->timeView()->setTimeOffset(record->beginUtcOffset);
    m_docks->directTypingTo(record);
    queueViewUpdate();
    if (mover == ShownRecord::Follower)
        m_browser->followRecord(record);
    else
        m_browser->selectRecord(record);
}

void MainWindowBase::queueViewUpdate()
{
    if (m_viewUpdateQueued)
        return;
    m_viewUpdateQueued = true;
    QMetaObject::invokeMethod(this, &MainWindowBase::updateRecordViewsNow, Qt::QueuedConnection);
}

void MainWindowBase::updateRecordViewsNow()
{
    m_docks->showRecord(shownRecord());
    m_viewUpdateQueued = false;
}

// ---- comments

void MainWindowBase::setCommentMap(std::shared_ptr<CommentMap> map)
{
    m_steps->setCommentMap(map);
    m_comments->setMap(std::move(map));
}

const std::shared_ptr<CommentMap> &MainWindowBase::commentMap() const
{
    return m_comments->map();
}

void MainWindowBase::saveComments()
{
    if (m_comments)
        m_comments->save();
}

void MainWindowBase::commentSelected(int index)
{
    const auto record = datastore() ? m_comments->recordOfRow(index, *datastore()) : nullptr;
    if (!record)
        return;
    showRecord(record);
    m_browser->timeView()->scrollIntoView(record->beginTime, effectiveEnd(*record)); // though it was shown before
}

void MainWindowBase::removeOrphanedComments()
{
    m_comments->removeOrphans([this](int variant) { return currentDatastoreFor(variant); });
}

// ---- the data

void MainWindowBase::setDatastore(std::shared_ptr<Datastore> store)
{
    const std::shared_ptr<Datastore> former = datastore(); // outlives its views
    if (store == former)
        return;
    if (former)
        disconnect(former.get(), nullptr, this, nullptr);
    m_shown->setDatastore(store);
    m_docks->setDatastore(store.get()); // at once: their slots have no meaning under the next description
    m_browser->setDatastore(store.get());
    setFollowLast(isFollowingLast()); // only a move of the user ends that
    m_browser->timeView()->navigator()->forgetViews();
    if (!store)
        return;
    if (!store->isEmpty()) {
        Tsb::TimeView *timeView = m_browser->timeView();
        if (!former)
            timeView->setTimeScale(TimeScale(store->at(0)->beginTime, firstTicksPerPixel, firstOriginPixel));
        timeView->setTimeOffset(store->records().back()->beginUtcOffset);
    }
    connect(store.get(), &Datastore::updated, this, &MainWindowBase::recordUpdated, Qt::DirectConnection);
}

void MainWindowBase::fitTimescale()
{
    if (!datastore() || datastore()->isEmpty())
        return;
    m_browser->fitTimescale(datastore()->at(0)->beginTime, effectiveEnd(*datastore()->records().back()));
}

void MainWindowBase::showGoToTime()
{
    auto *const dialog =
        new Tsb::GoToTimeDialog(m_browser->timeView()->navigator(), m_browser->timeView()->timeOffset(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindowBase::updatePreviousView()
{
    m_actions.previousView->setEnabled(m_browser->isEnabled() && m_browser->timeView()->navigator()->hasPreviousView());
}

void MainWindowBase::clearWindowSetup()
{
    m_browser->closeAllViews();
}

void MainWindowBase::setBrowsingEnabled(bool on)
{
    m_actions.followLast->setEnabled(on);
    m_actions.goToTime->setEnabled(on);
    m_steps->setEnabled(on);
    m_browser->setEnabled(on);
    updatePreviousView();
}

void MainWindowBase::showInversionStats()
{
    const Datastore none;
    const BusyMessage message(*this, tr("Working out the statistics..."), datastore() ? datastore()->size() : 0);
    m_logger.log(Log::Info, InversionStatistics::report(datastore() ? *datastore() : none));
}
