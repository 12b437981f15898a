#pragma once

#include "axis/timescale.h"
#include "gui/frame/latesize.h"
#include "gui/frame/windowlayout.h"
#include "gui/morvantide/restoremarks.h"
#include "windowsetup/setupfile.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <optional>

class MainWindowBase;
class QAction;
class QMenu;
class QSettings;
struct Record;

/// Keeps the layout of the window between its runs, and beside the data: which file it comes from, when it is
/// restored and saved, and the commands of the menu "Window". A file that could not be restored as a whole is never
/// overwritten but on the user's word, and stays as a backup then. Lives as long as the window, on the main thread.
class LayoutKeeper : public QObject {
    Q_OBJECT
public:
    LayoutKeeper(MainWindowBase &window, LogDock &log);
    ~LayoutKeeper() override;

    QMenu *menu() const { return m_menu; }

    // ---- the program's run
    /// The default layout, and the docks as they stood at the end of the last run. True if there were such. The
    /// settings outlive it.
    bool start(QSettings &settings);
    /// Keeps the docks for the next run.
    void storeDocks();

    // ---- the data's
    /// Folders with layouts for all users, for data without one of their own. None at first.
    void setSharedFolders(const QStringList &folders) { m_sharedFolders = folders; }
    /// The file for the layout of that folder's data, which may not exist.
    QString chooseFor(const QString &folder);
    /// What that was.
    const QString &chosenPath() const { return m_chosenPath; }
    /// Restores it and shows the open data by it, all of them, or as far as the layout tells.
    void showData();
    /// The data are about to be closed and read again: closeData() saves nothing, and showData() brings back what the
    /// window shows now, with its time span, its record, its measuring cursors and what it follows.
    void hold();
    bool isHolding() const { return m_held.has_value(); }
    /// Saves the layout if the user wants it saved by itself. To be called while all of it stands.
    void closeData();
    /// To be called when data have been opened or closed.
    void updateActions();
    /// The file in use; empty without data.
    const QString &windowSetupPath() const { return m_windowSetupPath; }

    void storeWindowSetup(QVariantMap &out) const;
    /// False: some of it was left out, which the log tells.
    bool restoreWindowSetup(const QVariantMap &setup, unsigned parts);
    bool restoreWindowSetupFile(const QString &path, unsigned parts);
    /// Tells where it is, or why it isn't. True if it is.
    bool storeWindowSetupFile(const QString &path);

public Q_SLOTS:
    void storeGuiNow();
    void storeGuiCopy();
    void restoreGuiAskFile();
    void restoreDefaultGui();

private Q_SLOTS:
    void undoRestore();
    void listFoundLayouts();

private:
    /// What a restore by hand replaced.
    struct Former {
        QVariantMap setup;
        unsigned parts;
        TimeScale timeScale;
        std::shared_ptr<Record> record; ///< null if none was selected
    };

    /// What stays while data are read again.
    struct Held {
        QVariantMap setup;
        QVariantMap place;
        TimeScale timeScale;
        bool isWhole; ///< the axis shows all of the data
        bool followsNow;
        QString path;
        bool mayOverwrite;
    };

    void makeMenu();
    void showHeld();
    void keepFormer(unsigned parts);
    void restoreByHand(const QString &path);
    bool restoreUndoably(const QString &path);
    /// Tells what is wrong with the file.
    WindowSetup::SetupFile read(const QString &path) const;
    /// A setup of that file, with a mark until it is drawn.
    bool restoreMarked(const QString &path, const QVariantMap &setup, unsigned parts);
    void restoreDataFile();
    void restoreAgainLater(const QVariantMap &setup, bool isResized);
    void endRestoreSoon();

    MainWindowBase &m_window;
    WindowLayout m_layout;
    Log::Logger m_logger;
    LateSize m_lateSize;
    QSettings *m_settings = nullptr;
    std::unique_ptr<RestoreMarks> m_marks; ///< from start() on
    QTimer m_restored;                     ///< until what was restored has been laid out and drawn
    QVariantMap m_lastSeen;                ///< the window's own part, before it was hidden
    QStringList m_sharedFolders;
    QString m_dataFolder;
    QString m_chosenPath;
    QString m_windowSetupPath;
    bool m_mayOverwrite = false; ///< without a backup
    QVariantMap m_keptPlace;     ///< of the layout restored last
    std::optional<Former> m_former;
    std::optional<Held> m_held;

    QMenu *m_menu = nullptr;
    QMenu *m_foundMenu = nullptr;
    QAction *m_saveAction = nullptr;
    QAction *m_undoAction = nullptr;
    QAction *m_autosaveAction = nullptr;
    QAction *m_keepPlaceAction = nullptr;
};
