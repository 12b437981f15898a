#include "gui/morvantide/morvantide_mainwin.h"

#include "datafiles/reading/datafinder.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/diagnosticstatusdockwidget.h"
#include "gui/common/iconhelp.h"
#include "gui/common/recordviews/reportview.h"
#include "gui/common/screenfit.h"
#include "gui/common/vargridparser.h"
#include "gui/frame/addplotbutton.h"
#include "gui/frame/busymessage.h"
#include "gui/frame/followcommand.h"
#include "gui/frame/framedocks.h"
#include "gui/frame/opencomments.h"
#include "gui/frame/windowkeys.h"
#include "gui/morvantide/colormapchoice.h"
#include "gui/morvantide/filechoices.h"
#include "gui/morvantide/installedfiles.h"
#include "gui/morvantide/morvantideinfowindow.h"
#include "gui/morvantide/opencommands.h"
#include "gui/morvantide/reinversionprogress.h"
#include "gui/morvantide/rereading.h"
#include "gui/morvantide/settingsfile.h"
#include "gui/morvantide/userguide.h"
#include "spectra/inverterfiles.h"
#include "windowsetup/settingsformat.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr QSize firstSize(1280, 860);

} // namespace

MorvantideMainWindow::MorvantideMainWindow(QWidget *parent) : MorvantideMainWindow(applicationSettingsFile(), parent) {}

MorvantideMainWindow::MorvantideMainWindow(const QString &settingsFile, QWidget *parent)
    : MainWindowBase(parent), m_colormap(new ColormapChoice(uiInfo(), this)), m_loader(this), m_inverterLoader(this),
      m_reinversion(this), m_inverters(uiInfo(), browser()), m_saving(uiInfo(), m_reinversion, m_inverters, this),
      m_exporting(uiInfo(), browser(), this)
{
    setAboutInfo(QStringLiteral("Morvantide"),
                 tr("Viewing and analysis of data measured with aerosol and ion mobility spectrometers."));
    setupActions();
    setupContextActions();
    setupDocks();
    m_layouts = std::make_unique<LayoutKeeper>(*this, *docks()->log());
    m_layouts->setSharedFolders(InstalledFiles::sharedFolders(QCoreApplication::applicationDirPath()));
    setupToolbar();
    setupMenus();
    m_open->makeEmptyWindow();
    keys()->nameKeysInToolTips();
    setBrowsingEnabled(false);
    setTitle(false);
    connect(&m_loader, &DataLoader::finished, this, &MorvantideMainWindow::fileReaderFinished);
    connect(&m_inverters, &InvertersInUse::changed, reportView(), &RecordViews::ReportView::setInverters);
    connect(&m_inverters, &InvertersInUse::changed, this, &MorvantideMainWindow::invertersChanged);

    if (!settingsFile.startsWith(QCoreApplication::applicationDirPath()))
        logger().log(Log::Info, QStringLiteral("Settings are kept in '%1'.").arg(settingsFile));
    WindowSetup::removeNamelessLock(settingsFile);
    setSettings(std::make_unique<QSettings>(settingsFile, WindowSetup::settingsFormat()));
    if (this->settings()->status() != QSettings::NoError)
        logger().log(Log::Warning, QStringLiteral("The settings could not be read from '%1'.").arg(settingsFile));
    m_open->setSettings(this->settings());
    resize(fittedToScreen(*this, firstSize));
    restoreMainWindowState(true);
    m_colormap->start(*this->settings());
    if (m_layouts->start(*this->settings()))
        keepDockSizes();
}

MorvantideMainWindow::~MorvantideMainWindow()
{
    closeData();
}

void MorvantideMainWindow::setupActions()
{
    MainWindowBase::setupActions();
    m_open = new OpenCommands(this);
    m_readAgainAction = new QAction(tr("Read again"), this);
    m_readAgainAction->setShortcut(Qt::Key_F5);
    connect(m_open, &OpenCommands::chosen, this, &MorvantideMainWindow::openFiles);
    connect(m_readAgainAction, &QAction::triggered, this, &MorvantideMainWindow::readAgain);
    m_follow = new FollowCommand(this);
    m_follow->setMayChange([this] { return mayChangeRecords(); });
    connect(m_follow, &FollowCommand::changed, this, [this] { setTitle(m_isIncomplete); });
    connect(m_follow, &FollowCommand::changed, browser(), &Tsb::TimeSeriesBrowser::setGrowing);
    connect(m_follow, &FollowCommand::changed, &m_inverters, &InvertersInUse::setFollowing);
    connect(m_follow, &FollowCommand::readAgainWanted, this, &MorvantideMainWindow::readAgain);
    connect(&m_follow->following(), &FolderFollowing::caughtUp, this, &MorvantideMainWindow::showHeldBackRecord);
    connect(&m_follow->following(), &FolderFollowing::flagsCame, this,
            [this](const auto &flagged) { statusDock()->addRecord(flagged); });
    m_follow->following().setSpectrumFilter([this](UiInfo::InfoKey info) { return uiInfo()->isKnown(info); });
    setupKeepingActions();
}

void MorvantideMainWindow::setupToolbar()
{
    MainWindowBase::setupToolbar();
    QAction *first = toolBar()->actions().first();
    toolBar()->insertActions(first, {m_open->folderAction(), m_open->filesAction()});
    toolBar()->insertSeparator(first);
    toolBar()->addAction(m_infoAction);

    toolBar()->addSeparator();
    toolBar()->addWidget(new AddPlotButton(*browser(), toolBar()));
}

void MorvantideMainWindow::setupMenus()
{
    MainWindowBase::setupMenus();
    fileMenu()->insertActions(actions().quit,
                              {m_open->folderAction(), m_open->filesAction(), m_open->recentMenu()->menuAction(),
                               m_readAgainAction, m_follow->action()});
    fileMenu()->insertSeparator(actions().quit);
    fileMenu()->insertActions(actions().quit, {m_exportAction, m_saveAction});
    fileMenu()->insertSeparator(actions().quit);
    viewMenu()->addSeparator();
    viewMenu()->addMenu(m_colormap->menu());
    connect(m_colormap, &ColormapChoice::offerTaken, browser(), &Tsb::TimeSeriesBrowser::setColormap);
    setupSpectraMenu();
    menuBar()->insertMenu(menuBar()->actions().last(), m_layouts->menu());
    helpMenu()->insertAction(helpMenu()->actions().first(), (new UserGuide(this))->action());
}

void MorvantideMainWindow::storeMainWindowState()
{
    MainWindowBase::storeMainWindowState();
    m_layouts->storeDocks();
    settings()->sync();
    if (settings()->status() != QSettings::NoError)
        logger().log(Log::Error,
                     QStringLiteral("The settings could not be saved to '%1'.").arg(settings()->fileName()));
}

void MorvantideMainWindow::setTitle(bool incomplete)
{
    QString title = appName();
    if (!m_folderPath.isNull())
        title = QStringLiteral("%1 - %2").arg(QDir(QDir(m_folderPath).absolutePath()).dirName(), appName());
    if (incomplete)
        title += tr(" (incomplete)");
    if (m_follow->isOn() && !m_folderPath.isNull())
        title += tr(" (following)");
    m_isIncomplete = incomplete;
    setWindowTitle(title.replace(QLatin1String("[*]"), QLatin1String("[*][*]"))); // which means a mark of changes
}

/// Others read records and their names on threads of their own, or between two turns of the event loop.
bool MorvantideMainWindow::mayChangeRecords() const
{
    return !isReading() && !m_inverterLoader.isLoading() && !m_reinversion.hasThreads() && !m_inverters.hasThreads() &&
           !m_saving.isRunning() && !m_exporting.isRunning();
}

void MorvantideMainWindow::terminateSignal()
{
    saveComments();
    storeMainWindowState();
    m_saving.stop(); // these run the event loop only now and then
    m_exporting.stop();
    QCoreApplication::quit();
}

std::shared_ptr<Datastore> MorvantideMainWindow::currentDatastoreFor(int dpVariantId)
{
    return dpVariantId == 0 ? datastore() : nullptr;
}

// ---- choosing

void MorvantideMainWindow::setPositionalArguments(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return;
    QVariantMap choice{{QStringLiteral("folderName"), QDir(arguments.first()).absolutePath()}};
    if (arguments.size() > 1)
        choice.insert(QStringLiteral("variant"), arguments[1]);
    QMetaObject::invokeMethod(
        this, [this, choice] { showDataDirChoice(choice); }, Qt::QueuedConnection); // the window shows first
}

void MorvantideMainWindow::showDataDirChoice()
{
    showDataDirChoice({});
}

void MorvantideMainWindow::showDataDirChoice(const QVariantMap &newchoice)
{
    m_open->askForFolder(newchoice);
}

void MorvantideMainWindow::showDataFileChoice()
{
    m_open->askForFiles();
}

// ---- opening and closing

void MorvantideMainWindow::openFiles(const DataRequest &request)
{
    if (isReading()) {
        logger().log(Log::Error, QStringLiteral("Can not open files while reading previous files is in progress"));
        return;
    }
    closeData();
    clearWindowSetup();
    m_request = request;
    m_folderPath = request.folder;
    setTitle(false);
    m_layouts->chooseFor(request.folder);
    startReading();
}

void MorvantideMainWindow::startReading()
{
    FileReaderSettings settings;
    settings.files = m_request.files;
    settings.folder = m_request.folder;
    settings.assumedOpmode = m_request.assumedOpmode;
    settings.windowSetup = m_layouts->chosenPath();
    settings.areHalfRowsAwaited = m_follow->isOn();
    m_loader.start(settings);
}

void MorvantideMainWindow::readAgain()
{
    if (!datastore() || isReading())
        return;
    m_readsAgain = true;
    m_request = m_request.again();
    startReading();
}

void MorvantideMainWindow::cancelFileReader()
{
    m_loader.cancel();
}

void MorvantideMainWindow::fileReaderFinished(const DataLoader::Result &result)
{
    if (std::exchange(m_readsAgain, false))
        return showAgain(result);
    if (result.reader->datastore()->isEmpty()) {
        logger().log(Log::Error, QStringLiteral("Nothing found"));
        if (m_request.files.isEmpty())
            logger().log(Log::Warning, nothingMatchedText(m_request.folder, QLatin1Char('\n')));
        closeData();
        return;
    }
    showData(result.reader);
    setTitle(result.cancelled);
}

void MorvantideMainWindow::showAgain(const DataLoader::Result &result)
{
    if (result.cancelled || result.reader->datastore()->isEmpty()) {
        logger().log(Log::Warning, QStringLiteral("The data stay as they were read before"));
        m_follow->readFailed(result.cancelled);
        return;
    }
    const Rereading kept(*uiInfo(), m_inverters.inverters());
    const auto comments = commentMap();
    m_layouts->hold();
    const std::function<void()> goOnTyping = backToTyping();
    closeData();
    showData(result.reader, &kept);
    if (comments && commentMap())
        commentMap()->takeUnsaved(*comments);
    m_exporting.showAgain(*settings());
    setTitle(false);
    QTimer::singleShot(0, this, goOnTyping); // when the record's line is filled again
}

/// What brings the keyboard back to where it is now: the user may not have asked for the read.
std::function<void()> MorvantideMainWindow::backToTyping() const
{
    const QPointer<QWidget> widget(focusWidget());
    const auto *typed = qobject_cast<QLineEdit *>(widget);
    return [widget, place = typed ? typed->cursorPosition() : 0] {
        if (!widget || !widget->isEnabled() || !widget->isVisible())
            return;
        widget->setFocus();
        if (auto *const line = qobject_cast<QLineEdit *>(widget))
            line->setCursorPosition(place);
    };
}

void MorvantideMainWindow::showData(const std::shared_ptr<FileReader> &read, const Rereading *kept)
{
    FileReader &reader = *read;
    m_folderPath = m_request.folder; // which was closed meanwhile, perhaps
    const BusyMessage message(*this, tr("Drawing the plots..."), reader.datastore()->size());
    DpVariant variant;
    variant.name = variant.shortName = m_request.variant;
    reader.metadata()->dpVariants.insert(0, variant);
    uiInfo()->setData(reader.metadata(), reader.spectrumInfos().toList());
    const QString own = QCoreApplication::applicationDirPath();
    uiInfo()->setGridLayouts(VarGridParser::load(
        QStringList{m_request.folder, own} + InstalledFiles::sharedFolders(own), *reader.metadata()));
    uiInfo()->publish();
    setCommentMap(OpenComments::read(m_request.folder, *reader.metadata(), *reader.datastore()));
    statusDock()->addRecords(*reader.datastore());
    setBrowsingEnabled(true);
    setDatastore(reader.datastore());
    removeOrphanedComments();
    m_inverters.setDatastore(reader.datastore());
    if (kept && !kept->inverters().empty())
        startReinversion(m_inverters.take(kept->inverters()));
    if (kept)
        kept->restoreComments(*uiInfo());
    else
        m_saving.setReadVariant(m_request.variant);
    updateKeepingActions();
    updateReinversionActions();
    m_layouts->showData();
    m_layouts->updateActions();
    m_open->setOpen(true);
    m_follow->setData(read, m_request.folder, [request = m_request] { return request.pathsNow(); });
    // Keys go to the data now, not to whatever had the focus before there were any.
    if (auto *plot = browser()->findChild<Tsb::Plot *>())
        plot->setFocus();
}

void MorvantideMainWindow::closeData()
{
    if (m_folderPath.isNull())
        return;
    m_inverterLoader.cancel();
    if (isReinverting())
        cancelReinvert();
    m_folderPath = QString();
    m_follow->closeData(m_layouts->isHolding());
    setTitle(false);
    m_layouts->closeData();
    clearWindowSetup();
    m_exporting.closeData(*settings(), m_layouts->isHolding());
    setDatastore(nullptr);
    m_layouts->updateActions();
    setCommentMap(nullptr); // what was typed for its last record is in it by now
    statusDock()->clear();
    uiInfo()->clear();
    uiInfo()->publish();
    m_inverters.setDatastore(nullptr);
    setBrowsingEnabled(false);
    m_open->setOpen(m_layouts->isHolding());
    updateKeepingActions();
    updateReinversionActions();
}

// ---- saving, and the list of spectra

void MorvantideMainWindow::setupKeepingActions()
{
    m_exportAction = new QAction(namedIcon(QStringLiteral("export-data")), tr("Export data..."), this);
    m_saveAction = new QAction(namedIcon(QStringLiteral("save-data")), tr("Save data..."), this);
    m_infoAction = new QAction(namedIcon(QStringLiteral("measurement-info")), tr("Spectra info"), this);
    m_infoAction->setIconText(tr("Spectra"));
    m_exportAction->setShortcut(Qt::CTRL + Qt::Key_E);
    m_saveAction->setShortcut(Qt::CTRL + Qt::Key_S);
    connect(m_exportAction, &QAction::triggered, this, &MorvantideMainWindow::showExportData);
    connect(browser(), &Tsb::TimeSeriesBrowser::spanExportRequested, this, &MorvantideMainWindow::showExportOfSpan);
    connect(m_saveAction, &QAction::triggered, this, &MorvantideMainWindow::saveData);
    connect(m_infoAction, &QAction::triggered, this, &MorvantideMainWindow::showInfoWindow);
    updateKeepingActions();
    m_infoAction->setEnabled(true); // until data were closed: only then it has lost what it told of
}

void MorvantideMainWindow::updateKeepingActions()
{
    m_readAgainAction->setEnabled(datastore() != nullptr);
    m_exportAction->setEnabled(datastore() != nullptr);
    m_saveAction->setEnabled(datastore() != nullptr);
    m_infoAction->setEnabled(datastore() != nullptr);
    m_exporting.setData(datastore(), m_request.folder, m_request.files);
}

void MorvantideMainWindow::saveData()
{
    m_saving.run(datastore(), *settings());
}

void MorvantideMainWindow::showExportData()
{
    m_exporting.showDialog(*settings());
}

void MorvantideMainWindow::showExportOfSpan(RecordTime begin, RecordTime end)
{
    m_exporting.showDialogFor({begin, end}, *settings());
}

void MorvantideMainWindow::showInfoWindow()
{
    if (m_infoWindow)
        m_infoWindow->close();
    delete m_infoWindow;
    m_infoWindow = new MorvantideInfoWindow(uiInfo(), this);
    m_infoWindow->setRecordsText(
        [this](UiInfo::InfoKey spectrum) { return MorvantideInfoWindow::recordsText(datastore().get(), spectrum); });
    connect(m_infoWindow, &MorvantideInfoWindow::requestSpectrumRemove, this, &MorvantideMainWindow::removeSpectrum);
    m_infoWindow->show();
}

// ---- reinversion

void MorvantideMainWindow::setupSpectraMenu()
{
    m_reinvertAction = new QAction(namedIcon(QStringLiteral("reinvert")), tr("Reinvert..."), this);
    m_cancelReinvertAction = new QAction(tr("Cancel reinversion"), this);
    connect(m_reinvertAction, &QAction::triggered, this, &MorvantideMainWindow::reinvert);
    connect(m_cancelReinvertAction, &QAction::triggered, this, &MorvantideMainWindow::cancelReinvert);
    connect(&m_inverterLoader, &InverterLoader::finished, this, &MorvantideMainWindow::invertersLoaded);
    connect(&m_reinversion, &Reinversion::finished, this, &MorvantideMainWindow::reinversionFinished);
    connect(&m_reinversion, &Reinversion::queueStatus, this, &MorvantideMainWindow::inversionQueueStatus);
    updateReinversionActions();

    auto *menu = new QMenu(tr("&Spectra"), this);
    menu->addActions({m_reinvertAction, m_cancelReinvertAction, actions().inversionStats, m_infoAction});
    menuBar()->insertMenu(viewMenu()->menuAction(), menu);

    m_reinversionProgress = new ReinversionProgress(m_reinversion, statusBar());
}

void MorvantideMainWindow::updateReinversionActions()
{
    m_reinvertAction->setEnabled(datastore() != nullptr); // during a run too: it asks then
    m_cancelReinvertAction->setEnabled(isReinverting());
}

// ---- starting

void MorvantideMainWindow::reinvert()
{
    if (!mayReinvert())
        return;
    const QStringList files = FileChoices(settings(), this).askForInverters(m_folderPath);
    if (!files.isEmpty() && mayReinvert()) // still, behind the dialog
        m_inverterLoader.start(files);
}

bool MorvantideMainWindow::mayReinvert()
{
    if (!datastore()) {
        logger().log(Log::Warning, QStringLiteral("No data to invert!"));
        return false;
    }
    if (m_inverterLoader.isLoading())
        return false; // its dialog stands before the window
    if (!isReinverting())
        return true;
    QMessageBox question(QMessageBox::Question, QStringLiteral("Morvantide"), tr("An inversion already in progress."),
                         QMessageBox::Abort | QMessageBox::Cancel, this);
    question.setInformativeText(tr("Do you want to abort the current inversion?"));
    question.setDefaultButton(QMessageBox::Cancel);
    if (question.exec() == QMessageBox::Abort)
        cancelReinvert();
    return false;
}

void MorvantideMainWindow::invertersLoaded(const InverterLoader::Result &result)
{
    if (result.cancelled)
        return;
    SpectMath::tellLoadingErrors(logger(), result.errors, !result.inverters.empty());
    if (!result.inverters.empty())
        startReinversion(m_inverters.take(result.inverters));
    else if (result.errors.isEmpty())
        logger().log(Log::Warning, QStringLiteral("No inverters!"));
    else
        logger().log(Log::Error, QStringLiteral("Reinversion failed!"));
}

void MorvantideMainWindow::startReinversion(const SpectMath::InverterList &inverters)
{
    if (isReinverting()) {
        logger().log(Log::Critical, QStringLiteral("Possible software bug: an inversion queue is already present."));
        return;
    }
    logger().log(Log::Info, QStringLiteral("Starting reinversion"));
    m_reinversion.start(datastore(), uiInfo()->metadata(), inverters);
    updateReinversionActions();
}

// ---- while it runs, and its end

void MorvantideMainWindow::inversionQueueStatus(int length, int speed)
{
    m_reinversionProgress->showRate(length, speed);
}

void MorvantideMainWindow::cancelReinvert()
{
    if (!isReinverting())
        return updateReinversionActions();
    const QString done = QString::number(m_reinversion.recordsDone());
    const QString count = QString::number(m_reinversion.recordCount());
    m_reinversion.cancel();
    logger().log(Log::Warning, QStringLiteral("Reinversion cancelled after %1 of %2 records").arg(done, count));
    reinversionFinished(); // which is said of a cancelled one too
}

void MorvantideMainWindow::reinversionFinished()
{
    logger().log(Log::Info, QStringLiteral("Reinversion finished!"));
    m_reinversionProgress->clear();
    browser()->redrawPlots(); // gaps whose end wasn't there yet when their begin was drawn
    updateReinversionActions();
}

void MorvantideMainWindow::removeSpectrum(const SpectMath::SpectrumInfo *spectrumptr)
{
    if (!isReinverting())
        return m_inverters.remove(spectrumptr);
    cancelReinvert();
    logger().log(Log::Error, QStringLiteral("Can't remove spectrum while reinversion in progress!"));
    m_inverters.ignoreRemovals(); // only another click means them
}
