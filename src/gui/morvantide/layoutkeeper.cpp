#include "gui/morvantide/layoutkeeper.h"

#include "datafiles/reading/datafinder.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/frame/docklayout.h"
#include "gui/frame/dockstate.h"
#include "gui/frame/mainwindowbase.h"
#include "gui/morvantide/filechoices.h"
#include "gui/morvantide/installedfiles.h"
#include "gui/morvantide/keptplace.h"
#include "windowsetup/setupfile.h"
#include "windowsetup/setupkeys.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <QStatusBar>

namespace Keys = WindowSetup::Keys;

namespace {

constexpr int messageTime = 5000; // ms
constexpr int drawingTime = 500;  // ms until a layout is surely seen
constexpr int mostFound = 50;

/// In the settings, beside the geometry.
const QString dockGroup = QStringLiteral("MainWindow/");
const QStringList dockKeys{Keys::state, QStringLiteral("statechecksum")};

bool isTrue(const QVariant &value)
{
    return value.type() == QVariant::Bool && value.toBool();
}

} // namespace

LayoutKeeper::LayoutKeeper(MainWindowBase &window, LogDock &log)
    : m_window(window), m_layout(window, *window.browser(), *window.uiInfo(), log), m_logger(QStringLiteral("gui")),
      m_lateSize(window)
{
    m_restored.setSingleShot(true);
    m_restored.setInterval(drawingTime);
    connect(&m_restored, &QTimer::timeout, this, [this] { m_marks->finish(); });
    makeMenu();
    updateActions();
}

LayoutKeeper::~LayoutKeeper()
{
    if (m_marks)
        m_marks->finish();
}

void LayoutKeeper::makeMenu()
{
    m_menu = new QMenu(tr("&Window"), &m_window);
    const auto add = [this](const QString &text, auto slot) {
        QAction *const action = m_menu->addAction(text);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    const auto addChoice = [this](const QString &text) {
        QAction *const action = m_menu->addAction(text);
        action->setCheckable(true);
        return action;
    };
    m_saveAction = add(tr("Save layout"), &LayoutKeeper::storeGuiNow);
    add(tr("Save layout copy..."), &LayoutKeeper::storeGuiCopy);
    add(tr("Restore layout..."), &LayoutKeeper::restoreGuiAskFile);
    m_foundMenu = m_menu->addMenu(tr("Layouts of the data"));
    connect(m_foundMenu, &QMenu::aboutToShow, this, &LayoutKeeper::listFoundLayouts);
    add(tr("Restore default layout"), &LayoutKeeper::restoreDefaultGui);
    m_undoAction = add(tr("Undo restore"), &LayoutKeeper::undoRestore);
    m_menu->addSeparator();
    m_autosaveAction = addChoice(tr("Autosave layout"));
    m_keepPlaceAction = addChoice(tr("Keep time span and record"));
    m_keepPlaceAction->setStatusTip(tr("The layout holds them, too")); // menus show no tool tips
}

void LayoutKeeper::updateActions()
{
    const bool hasData = m_window.datastore() != nullptr;
    m_saveAction->setEnabled(hasData);
    m_foundMenu->setEnabled(hasData);
    m_undoAction->setEnabled(m_former.has_value());
}

// ---- the program's run

bool LayoutKeeper::start(QSettings &settings)
{
    m_settings = &settings;
    m_marks = std::make_unique<RestoreMarks>(settings);
    const WindowSetup::SetupFile standard = WindowSetup::readDefaultSetup();
    if (!standard.complaint.isNull())
        m_logger.log(Log::Warning, standard.complaint);
    restoreWindowSetup(standard.setup, WindowSetup::RecordViews); // the docks stand as the window made them

    QVariantMap docks;
    for (const QString &key : dockKeys)
        docks.insert(key, settings.value(dockGroup + key));
    if (!docks.value(Keys::state).isValid())
        return false;
    const QString mark = settings.fileName();
    if (m_marks->hasCrashed(mark)) {
        m_logger.log(Log::Warning,
                     QStringLiteral("The docks stand where they do by default, for the program ended when it put "
                                    "them where they were."));
        return false;
    }
    m_marks->begin(mark);
    const QString complaint = restoreDockState(m_window, docks);
    if (!complaint.isNull())
        m_logger.log(Log::Warning, QStringLiteral("The docks stand where they do by default: %1").arg(complaint));
    m_lateSize.await([this, docks] { restoreDockState(m_window, docks); });
    endRestoreSoon();
    return complaint.isNull();
}

void LayoutKeeper::storeDocks()
{
    if (m_window.isVisible()) // hidden windows hide docks that stand outside of them
        m_lastSeen = m_layout.mainWindow();
    if (m_lastSeen.isEmpty())
        return;
    for (const QString &key : dockKeys)
        m_settings->setValue(dockGroup + key, m_lastSeen.value(key));
    m_marks->forget(m_settings->fileName());
}

/// A fault may show only when what was restored is laid out or drawn.
void LayoutKeeper::endRestoreSoon()
{
    m_restored.start();
}

// ---- the data's

QString LayoutKeeper::chooseFor(const QString &folder)
{
    m_dataFolder = folder;
    m_chosenPath = QFileInfo(findWindowSetup(QDir(folder))).absoluteFilePath();
    m_logger.log(Log::Info, QStringLiteral("Using window setup file: %1").arg(m_chosenPath));
    return m_chosenPath;
}

void LayoutKeeper::hold()
{
    const Tsb::TimeNavigator &navigator = *m_window.browser()->timeView()->navigator();
    m_held = Held{{},
                  KeptPlace::of(m_window),
                  navigator.timeScale(),
                  navigator.isWhole(),
                  navigator.isFollowingNow(),
                  m_windowSetupPath,
                  m_mayOverwrite};
    m_layout.store(m_held->setup);
    m_window.browser()->setKeepingCursors(true);
}

void LayoutKeeper::showHeld()
{
    const Held held = std::move(*m_held);
    m_held.reset();
    m_window.browser()->setKeepingCursors(false);
    m_windowSetupPath = held.path;
    m_mayOverwrite = held.mayOverwrite;
    m_layout.restore(held.setup, WindowSetup::RecordViews | WindowSetup::Timeseries);
    Tsb::TimeNavigator *const navigator = m_window.browser()->timeView()->navigator();
    if (!m_window.isFollowingLast())
        KeptPlace::showRecord(m_window, held.place);
    navigator->setFollowNow(held.followsNow); // which showing a record may have ended
    navigator->setTimeScale(held.timeScale);
    navigator->adaptToWidth(); // time has gone on where it follows the present
    if (held.isWhole)
        m_window.fitTimescale();
    m_window.browser()->fitUntoldScales();
    navigator->forgetViews();
}

void LayoutKeeper::showData()
{
    if (m_held)
        return showHeld();
    restoreDataFile();
    m_window.fitTimescale();
    Tsb::TimeSeriesBrowser &browser = *m_window.browser();
    KeptPlace::show(m_window, m_keptPlace);
    if (browser.hasViews())
        browser.fitUntoldScales();
    else
        browser.addDefaultStack();
    browser.timeView()->navigator()->forgetViews(); // the way back begins here
}

void LayoutKeeper::restoreDataFile()
{
    m_windowSetupPath = m_chosenPath;
    m_mayOverwrite = true;
    m_former.reset(); // of a window without these data
    m_keptPlace.clear();
    const QString path = InstalledFiles::layoutToRestore(m_windowSetupPath, m_sharedFolders);
    if (!QFileInfo::exists(path))
        return;
    if (m_marks->hasCrashed(path)) {
        m_mayOverwrite = false;
        m_logger.log(Log::Warning,
                     QStringLiteral("The layout '%1' isn't restored, for the program ended when it restored it. "
                                    "\"Restore layout...\" tries it again.")
                         .arg(path));
        return;
    }
    m_mayOverwrite = restoreWindowSetupFile(path, WindowSetup::OfOpenedData);
}

void LayoutKeeper::closeData()
{
    if (m_autosaveAction->isChecked() && !m_windowSetupPath.isEmpty() && !m_held) {
        if (m_mayOverwrite || !QFileInfo::exists(m_windowSetupPath))
            storeWindowSetupFile(m_windowSetupPath);
        else
            m_logger.log(Log::Warning, QStringLiteral("The layout isn't saved, for '%1' was not restored as a whole. "
                                                      "\"Save layout\" replaces it and keeps it as a backup.")
                                           .arg(m_windowSetupPath));
    }
    m_windowSetupPath.clear();
    m_former.reset();
}

void LayoutKeeper::storeWindowSetup(QVariantMap &out) const
{
    m_layout.store(out);
    if (!m_window.isVisible() && !m_lastSeen.isEmpty())
        out.insert(Keys::mainWindow, m_lastSeen);
    out.insert(Keys::autosaveSettings, m_autosaveAction->isChecked());
    if (m_keepPlaceAction->isChecked())
        out.insert(Keys::keptPlace, KeptPlace::of(m_window));
}

bool LayoutKeeper::restoreWindowSetup(const QVariantMap &setup, unsigned parts)
{
    const bool isWhole = m_layout.restore(setup, parts);
    if (WindowSetup::isTooOld(setup))
        return false;
    if ((parts & WindowSetup::DockState) != 0)
        restoreAgainLater(setup, (parts & WindowSetup::Geometry) != 0);
    if ((parts & WindowSetup::Timeseries) != 0) {
        m_keptPlace = setup.value(Keys::keptPlace).toMap();
        m_keepPlaceAction->setChecked(!m_keptPlace.isEmpty());
    }
    if ((parts & WindowSetup::Autosave) != 0)
        m_autosaveAction->setChecked(isTrue(setup.value(Keys::autosaveSettings)));
    return isWhole;
}

/// Docks, and a time span, of a window that isn't as large yet as it was asked to be.
void LayoutKeeper::restoreAgainLater(const QVariantMap &setup, bool isResized)
{
    const QVariantMap docks = setup.value(Keys::mainWindow).toMap();
    const QVariantMap place = isResized ? setup.value(Keys::keptPlace).toMap() : QVariantMap();
    m_lateSize.await([this, docks, place] {
        restoreDockState(m_window, docks);
        KeptPlace::show(m_window, place);
    });
}

bool LayoutKeeper::restoreWindowSetupFile(const QString &path, unsigned parts)
{
    const WindowSetup::SetupFile file = read(path);
    return file.condition == WindowSetup::SetupFile::Sound && restoreMarked(path, file.setup, parts);
}

WindowSetup::SetupFile LayoutKeeper::read(const QString &path) const
{
    WindowSetup::SetupFile file = WindowSetup::readSetupFile(path);
    if (!file.complaint.isNull())
        m_logger.log(Log::Warning, file.complaint);
    return file;
}

bool LayoutKeeper::restoreMarked(const QString &path, const QVariantMap &setup, unsigned parts)
{
    m_marks->begin(path);
    const bool isWhole = restoreWindowSetup(setup, parts);
    endRestoreSoon();
    return isWhole;
}

bool LayoutKeeper::storeWindowSetupFile(const QString &path)
{
    QVariantMap setup;
    storeWindowSetup(setup);
    const QString reason = WindowSetup::writeSetupFile(path, setup);
    if (!reason.isNull()) {
        m_logger.log(Log::Warning, QStringLiteral("The layout could not be saved to '%1': %2").arg(path, reason));
        return false;
    }
    m_window.statusBar()->showMessage(tr("The layout was saved to '%1'").arg(path), messageTime);
    m_marks->forget(path);
    return true;
}

// ---- commands

void LayoutKeeper::storeGuiNow()
{
    if (m_windowSetupPath.isEmpty())
        return;
    if (!m_mayOverwrite && QFileInfo::exists(m_windowSetupPath)) {
        const QString reason = WindowSetup::moveToBackup(m_windowSetupPath);
        if (!reason.isNull()) {
            m_logger.log(Log::Warning, QStringLiteral("The layout isn't saved, for '%1' can't be moved to a backup: %2")
                                           .arg(m_windowSetupPath, reason));
            return;
        }
    }
    m_mayOverwrite = storeWindowSetupFile(m_windowSetupPath) || m_mayOverwrite;
}

void LayoutKeeper::storeGuiCopy()
{
    const QString path = FileChoices(m_settings, &m_window).askForLayoutCopy(m_dataFolder);
    if (path.isEmpty())
        return;
    if (path == m_windowSetupPath)
        storeGuiNow();
    else if (QFileInfo::exists(path) && !path.endsWith(QLatin1String(".windowsetup")))
        m_logger.log(Log::Warning,
                     QStringLiteral("The layout isn't saved to '%1', for what stands there is no layout").arg(path));
    else
        storeWindowSetupFile(path);
}

void LayoutKeeper::restoreGuiAskFile()
{
    const QString path = FileChoices(m_settings, &m_window).askForLayout(m_dataFolder);
    if (!path.isEmpty())
        restoreByHand(path);
}

void LayoutKeeper::restoreByHand(const QString &path)
{
    const bool isWhole = restoreUndoably(path);
    if (path == m_windowSetupPath)
        m_mayOverwrite = isWhole;
}

bool LayoutKeeper::restoreUndoably(const QString &path)
{
    const WindowSetup::SetupFile file = read(path);
    if (file.condition != WindowSetup::SetupFile::Sound)
        return false;
    if (WindowSetup::isTooOld(file.setup))
        return restoreWindowSetup(file.setup, WindowSetup::All); // which only tells so
    keepFormer(WindowSetup::All);
    const bool isWhole = restoreMarked(path, file.setup, WindowSetup::All);
    KeptPlace::show(m_window, m_keptPlace);
    m_window.browser()->fitUntoldScales();
    return isWhole;
}

void LayoutKeeper::restoreDefaultGui()
{
    keepFormer(WindowSetup::OfDefault);
    const WindowSetup::SetupFile standard = WindowSetup::readDefaultSetup();
    restoreWindowSetup(standard.setup, WindowSetup::RecordViews);
    resetDocks(m_window);
}

void LayoutKeeper::keepFormer(unsigned parts)
{
    m_former = Former{{}, parts, m_window.browser()->timeScale(), m_window.shownRecord()};
    storeWindowSetup(m_former->setup);
    updateActions();
}

void LayoutKeeper::undoRestore()
{
    if (!m_former)
        return;
    const Former former = *m_former;
    m_former.reset();
    restoreWindowSetup(former.setup, former.parts);
    if (former.record && former.record != m_window.shownRecord())
        m_window.showRecord(former.record);
    m_window.browser()->timeView()->navigator()->setTimeScale(former.timeScale);
    updateActions();
}

void LayoutKeeper::listFoundLayouts()
{
    m_foundMenu->clear();
    const QDir folder(m_dataFolder);
    const QStringList shared = InstalledFiles::layoutsIn(m_sharedFolders);
    const QStringList paths = (windowSetupsFor(folder) + shared).mid(0, mostFound);
    for (const QString &path : paths) {
        QString text = shared.contains(path) ? path : folder.relativeFilePath(path);
        QAction *const action = m_foundMenu->addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(path == m_windowSetupPath);
        connect(action, &QAction::triggered, this, [this, path] { restoreByHand(path); });
    }
    if (paths.isEmpty())
        m_foundMenu->addAction(tr("None"))->setEnabled(false);
}
