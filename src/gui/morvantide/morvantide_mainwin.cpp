#include "gui/morvantide/morvantide_mainwin.h"

#include "datafiles/reading/datafinder.h"
#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"
#include "gui/common/menubutton.h"
#include "gui/common/recordviews/reportview.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/recentfolders.h"
#include "gui/morvantide/settingsfile.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QStyle>
#include <QToolBar>

namespace {

constexpr QSize firstSize(1280, 860);
const QString choiceKey = QStringLiteral("datachooser");
const QString foldersKey = QStringLiteral("datachooserOldPaths");
const QString pickedPathKey = QStringLiteral("lastpathpickfiles");

QString applicationSettingsFile()
{
    return settingsFilePath(QCoreApplication::applicationDirPath(),
                            QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
}

} // namespace

MorvantideMainWindow::MorvantideMainWindow(QWidget *parent) : MorvantideMainWindow(applicationSettingsFile(), parent) {}

MorvantideMainWindow::MorvantideMainWindow(const QString &settingsFile, QWidget *parent)
    : MainWindowBase(parent), m_loader(this), m_inverterLoader(this), m_reinversion(this)
{
    setAboutInfo(QStringLiteral("Morvantide"),
                 tr("Viewing and analysis of data measured with aerosol and ion mobility spectrometers."));
    setupActions();
    setupContextActions();
    setupDocks();
    setupToolbar();
    setupMenus();
    setBrowsingEnabled(false);
    setTitle(false);
    connect(&m_loader, &DataLoader::finished, this, &MorvantideMainWindow::fileReaderFinished);
    connect(this, &MorvantideMainWindow::invertersChanged, reportView(), &RecordViews::ReportView::setInverters);

    if (!settingsFile.startsWith(QCoreApplication::applicationDirPath()))
        logger().log(Log::Info, QStringLiteral("Settings are kept in '%1'.").arg(settingsFile));
    setSettings(std::make_unique<QSettings>(settingsFile, QSettings::IniFormat));
    const QSize titleBar(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    resize(firstSize.boundedTo(QGuiApplication::primaryScreen()->availableSize() - titleBar));
    restoreMainWindowState(true);
}

MorvantideMainWindow::~MorvantideMainWindow()
{
    setDatastore(nullptr);
    closeData();
}

void MorvantideMainWindow::setupActions()
{
    MainWindowBase::setupActions();
    m_openFolderAction = new QAction(namedIcon(QStringLiteral("open-folder")), tr("Open data folder..."), this);
    m_openFolderAction->setIconText(tr("Open folder"));
    m_openFilesAction =
        new QAction(namedIcon(QStringLiteral("open-many-files")), tr("Manually select data files..."), this);
    m_openFilesAction->setIconText(tr("Manually select files"));
    connect(m_openFolderAction, &QAction::triggered, this, [this] { showDataDirChoice(); });
    connect(m_openFilesAction, &QAction::triggered, this, &MorvantideMainWindow::showDataFileChoice);
    setupKeepingActions();
}

void MorvantideMainWindow::setupToolbar()
{
    MainWindowBase::setupToolbar();
    QAction *first = toolBar()->actions().first();
    toolBar()->insertActions(first, {m_openFolderAction, m_openFilesAction});
    toolBar()->insertSeparator(first);
    toolBar()->addAction(m_infoAction);

    auto *addPlot = new MenuButton(toolBar());
    addPlot->setText(tr("Add plot"));
    addPlot->setIcon(namedIcon(QStringLiteral("add-plot")));
    addPlot->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto *menu = new Tsb::PlotMenu(addPlot);
    menu->addActions(browser()->addPlotActions());
    addPlot->setMenu(menu);
    const QAction *anyPlot = browser()->addPlotActions().first();
    const auto followActions = [addPlot, anyPlot] { addPlot->setEnabled(anyPlot->isEnabled()); };
    connect(anyPlot, &QAction::changed, addPlot, followActions);
    toolBar()->addSeparator();
    toolBar()->addWidget(addPlot);
}

void MorvantideMainWindow::setupMenus()
{
    MainWindowBase::setupMenus();
    fileMenu()->insertActions(actions().quit, {m_openFolderAction, m_openFilesAction});
    fileMenu()->insertSeparator(actions().quit);
    fileMenu()->insertAction(actions().quit, m_saveAction);
    fileMenu()->insertSeparator(actions().quit);
    setupSpectraMenu();
    m_spectraMenu->addAction(m_infoAction);
}

void MorvantideMainWindow::setTitle(bool incomplete)
{
    QString title = appName();
    if (!m_folderPath.isNull())
        title = QStringLiteral("%1 - %2").arg(QDir(QDir(m_folderPath).absolutePath()).dirName(), appName());
    if (incomplete)
        title += tr(" (incomplete)");
    setWindowTitle(title.replace(QLatin1String("[*]"), QLatin1String("[*][*]"))); // which means a mark of changes
}

void MorvantideMainWindow::terminateSignal()
{
    storeMainWindowState();
    if (m_saver)
        m_saver->reject(); // ends the writing, which runs the event loop only now and then
    QCoreApplication::quit();
}

std::shared_ptr<Datastore> MorvantideMainWindow::currentDatastoreFor(int dpVariantId)
{
    return dpVariantId == 0 ? m_store : nullptr;
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
    const QStringList folders = settings()->value(foldersKey).toStringList();
    DataChooserDialog dialog(this);
    dialog.setOldPaths(folders);
    dialog.setChoice(newchoice.isEmpty() ? settings()->value(choiceKey).toMap() : newchoice);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QVariantMap choice = dialog.choice();
    const QString folder = choice.value(QStringLiteral("folderName")).toString();
    settings()->setValue(choiceKey, choice);
    settings()->setValue(foldersKey, recentFoldersWith(folders, folder));
    openFiles({folder, findDataFiles(choice), choice.value(QStringLiteral("variant")).toString()});
}

void MorvantideMainWindow::showDataFileChoice()
{
    QFileDialog dialog(this, tr("Select files"), settings()->value(pickedPathKey).toString());
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString folder = dialog.directory().absolutePath();
    settings()->setValue(pickedPathKey, folder);
    openFiles({folder, dialog.selectedFiles(), {}});
}

// ---- opening and closing

void MorvantideMainWindow::openFiles(const Request &request)
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
    FileReaderSettings settings;
    settings.files = request.files;
    settings.folder = request.folder;
    m_loader.start(settings);
}

void MorvantideMainWindow::cancelFileReader()
{
    m_loader.cancel();
}

void MorvantideMainWindow::fileReaderFinished(const DataLoader::Result &result)
{
    result.reader->finishRecords();
    if (result.reader->datastore()->isEmpty()) {
        logger().log(Log::Error, QStringLiteral("Nothing found"));
        if (m_request.files.isEmpty())
            logger().log(Log::Warning, nothingMatchedText(m_request.folder));
        closeData();
        return;
    }
    showData(*result.reader);
    setTitle(result.cancelled);
}

void MorvantideMainWindow::showData(FileReader &reader)
{
    m_store = reader.datastore();
    DpVariant variant;
    variant.name = variant.shortName = m_request.variant;
    reader.metadata()->dpVariants.insert(0, variant);
    uiInfo()->setData(reader.metadata(), reader.spectrumInfos().toList());
    uiInfo()->publish();
    setBrowsingEnabled(true);
    setDatastore(m_store);
    updateKeepingActions();
    m_reinversionCount = 0;
    updateReinversionActions();
    fitTimescale();
    if (!browser()->hasViews())
        browser()->addDefaultStack();
    browser()->timeView()->navigator()->forgetViews(); // the way back begins at the whole of the data
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
    setTitle(false);
    clearWindowSetup();
    setDatastore(nullptr);
    m_store.reset();
    uiInfo()->clear();
    uiInfo()->publish();
    m_inverters.clear();
    Q_EMIT invertersChanged(m_inverters);
    setBrowsingEnabled(false);
    updateKeepingActions();
    updateReinversionActions();
}
