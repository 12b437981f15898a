#pragma once

#include "gui/common/uiinfo.h"
#include "gui/frame/shownrecord.h"
#include "log/logger.h"

#include <QMainWindow>

#include <memory>

class CommentMap;
class DiagnosticStatusDockWidget;
class FrameDocks;
class OpenComments;
class QSettings;
class QToolBar;
class RecordSteps;
class WindowKeys;

namespace RecordViews {
class ReportView;
} // namespace RecordViews
namespace Tsb {
class TimeSeriesBrowser;
}

/// The frame of the application: docks, actions, menus and the browser in the middle. All views show one record, which
/// ShownRecord owns; the frame tells them of it. It doesn't know where data come from: a derived class does, and calls
/// in its constructor setupActions, setupContextActions, setupDocks, setupToolbar and setupMenus, in this order.
class MainWindowBase : public QMainWindow {
    Q_OBJECT
public:
    ~MainWindowBase() override;

    const std::shared_ptr<UiInfo> &uiInfo() const { return m_uiInfo; }
    const std::shared_ptr<Datastore> &datastore() const; ///< may be null
    const std::shared_ptr<Record> &shownRecord() const;  ///< may be null
    Tsb::TimeSeriesBrowser *browser() const { return m_browser; }
    bool isFollowingLast() const;
    /// The store of a variant; null here.
    virtual std::shared_ptr<Datastore> currentDatastoreFor(int dpVariantId);

public Q_SLOTS:
    void addLogEntry(Log::Entry entry);
    void showAboutBox();
    /// Ends following the latest record, unless the frame itself moves the record.
    void showRecord(std::shared_ptr<Record> record);
    /// For senders that may fire many times in a row: the last of one pass of the event loop is shown.
    void showRecordDelayed(std::shared_ptr<Record> record);
    /// Shows the latest record, and each one that comes in; until the user moves to another, also in data that are
    /// opened later.
    virtual void setFollowLast(bool on);
    /// Shows the time span of all records.
    void fitTimescale();
    /// Asks for a moment and shows it.
    void showGoToTime();
    /// Takes all views out of the browser, to be ready for the next setup.
    void clearWindowSetup();
    void setBrowsingEnabled(bool on);
    void recordUpdated(int index, std::shared_ptr<Record> record, int flags);
    void updateShownRecord();
    void updateRecordViewsNow();
    virtual void implicitDisableFollowLast();
    void jumpRecord(JumpCmd command);
    /// Shows the record of a row of the comment list; nothing for a row that isn't there.
    void commentSelected(int index);
    /// Forgets the comments whose records aren't in the store of their variant.
    void removeOrphanedComments();
    /// Logs how well the spectra explain the currents.
    void showInversionStats();

protected:
    /// The actions of the frame.
    struct Actions {
        QAction *quit = nullptr;
        QAction *about = nullptr;
        QAction *followLast = nullptr;
        QAction *followNow = nullptr;
        QAction *fitTimescale = nullptr;
        QAction *goToTime = nullptr;
        QAction *previousView = nullptr;
        QAction *inversionStats = nullptr;
    };

    explicit MainWindowBase(QWidget *parent = nullptr);

    virtual void setupActions();
    virtual void setupContextActions();
    virtual void setupDocks();
    virtual void setupToolbar();
    virtual void setupMenus();
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

    /// Window geometry, which belongs to the user and not to the data.
    virtual void storeMainWindowState();
    virtual void restoreMainWindowState(bool restoreGeometry);
    /// The docks got their sizes: else they get their first ones when the window is shown.
    void keepDockSizes() { m_wasShown = true; }

    /// Lets go of the old store, and of the shown record with it, and takes the new one; null for none. UiInfo must
    /// describe the new one by then.
    void setDatastore(std::shared_ptr<Datastore> store);
    /// All that there is has come into the store.
    void showHeldBackRecord() { m_shown->showHeldBack(); }
    /// Null for data that can't have comments. Those of the old map are saved before it goes.
    void setCommentMap(std::shared_ptr<CommentMap> map);
    const std::shared_ptr<CommentMap> &commentMap() const; ///< may be null
    /// Saves what is typed, and tries again what could not be written.
    void saveComments();
    void setAboutInfo(const QString &name, const QString &description);
    void setSettings(std::unique_ptr<QSettings> settings);
    const QString &appName() const { return m_appName; }
    QSettings *settings() const { return m_settings.get(); }
    const Log::Logger &logger() const { return m_logger; }
    const Actions &actions() const { return m_actions; }
    FrameDocks *docks() const { return m_docks; }
    WindowKeys *keys() const { return m_keys; }
    DiagnosticStatusDockWidget *statusDock() const;
    RecordViews::ReportView *reportView() const;
    QMenu *fileMenu() const { return m_fileMenu; }
    QMenu *helpMenu() const { return m_helpMenu; }
    QMenu *viewMenu() const { return m_viewMenu; }
    QToolBar *toolBar() const { return m_toolBar; }

private:
    void setupShortcuts();
    QAction *makeAction(const QString &text, const QString &icon = {}, const QString &shortText = {});
    void updatePreviousView();
    void shownRecordChanged(const std::shared_ptr<Record> &record, ShownRecord::Mover mover);
    void queueViewUpdate();

    QString m_appName;
    QString m_aboutText;
    Log::Logger m_logger;
    std::shared_ptr<UiInfo> m_uiInfo;
    FrameDocks *m_docks;
    ShownRecord *m_shown;
    Tsb::TimeSeriesBrowser *m_browser;
    OpenComments *m_comments = nullptr;
    RecordSteps *m_steps = nullptr;
    WindowKeys *m_keys = nullptr;
    Actions m_actions;
    QMenu *m_fileMenu = nullptr;
    QMenu *m_viewMenu = nullptr;
    QMenu *m_helpMenu = nullptr;
    QToolBar *m_toolBar = nullptr;
    std::unique_ptr<QSettings> m_settings; ///< made by the derived class
    bool m_wasShown = false;
    bool m_viewUpdateQueued = false;
};
