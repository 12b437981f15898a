#pragma once

#include "gui/common/uiinfo.h"
#include "records/record.h"
#include "store/datastore.h"

#include <QList>
#include <QObject>

#include <memory>

class CommentView;
class DiagnosticStatusDockWidget;
class LogDock;
class QAction;
class QDockWidget;
class QMainWindow;
class RecordForm;

namespace RecordViews {
class RecordView;
class ReportView;
} // namespace RecordViews

/// The docks of the window: makes them, and tells those of one record which one it is. The window owns them.
class FrameDocks : public QObject {
    Q_OBJECT
public:
    /// Makes the log dock alone: whatever follows can log.
    FrameDocks(std::shared_ptr<UiInfo> uiInfo, QMainWindow *window);

    /// Makes the others, and gives all of them their default places.
    void makeAll();
    /// Adds a dock behind those of the menu. Called before makeAll(), which places it.
    void add(QDockWidget *dock, const QString &icon);
    /// Adds a view that is told of each shown record. Called before makeAll(), too.
    void addRecordView(RecordViews::RecordView *view, const QString &icon);

    /// The commands that show and hide the docks, in their order in the menu.
    QList<QAction *> toggleActions() const;

    /// Null, and a record that is still coming in, reaches the form alone: the views keep the last one.
    void showRecord(const std::shared_ptr<Record> &record);
    /// Is told at once of the record that showRecord() will bring: letters for its comment may come before that.
    void directTypingTo(const std::shared_ptr<Record> &record);
    /// No record is shown, and those to come are of that store; null for none.
    void setDatastore(Datastore *datastore);

    LogDock *log() const { return m_log; }
    // Null before makeAll():
    RecordForm *form() const { return m_form; }
    CommentView *commentList() const { return m_commentList; }
    DiagnosticStatusDockWidget *status() const { return m_status; }
    RecordViews::ReportView *report() const { return m_report; }

private:
    QDockWidget *makeDock(const QString &name, const QString &title, const QString &icon);

    std::shared_ptr<UiInfo> m_uiInfo;
    QMainWindow *m_window;
    LogDock *m_log;
    RecordForm *m_form = nullptr;
    CommentView *m_commentList = nullptr;
    DiagnosticStatusDockWidget *m_status = nullptr;
    RecordViews::ReportView *m_report = nullptr;
    QList<QDockWidget *> m_docks;
    QList<RecordViews::RecordView *> m_views; ///< told of each shown record
};
