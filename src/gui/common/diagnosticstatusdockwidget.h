#pragma once

#include "gui/common/flagcounts.h"
#include "gui/common/uiinfo.h"

#include <QDockWidget>

#include <memory>

class Datastore;
class DockTitleBar;
class NotesBrowser;
class QMenu;
class QTimer;
class QUrl;
class SeenContents;

/// Counts the flags of all records, and tells of them in a table whose lines highlight what a flag is about. Its title
/// says how many there are. Main thread only.
class DiagnosticStatusDockWidget : public QDockWidget {
    Q_OBJECT
public:
    enum Mode { ByTime = 0, ByCount = 1 };

    explicit DiagnosticStatusDockWidget(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr);

    /// For a record that comes in. Drawn as soon as the event loop runs, once for many.
    void addRecord(const Spectrometer::FullRecordPointer &record);
    /// For the records of a read: drawn once.
    void addRecords(const Datastore &store);
    /// A mode other than those leaves the last picture.
    void setMode(int mode);
    void clear();

public Q_SLOTS:
    /// The address is the flag's key and "flag".
    void flagBrowserClicked(const QUrl &url);

private:
    void flagsChanged();
    void redraw();
    void setTable(const QString &html);
    void addFlagCommands(QMenu *menu, const QString &address);
    std::shared_ptr<Spectrometer::RecordFlag> flagAt(const QString &address) const;

    std::shared_ptr<UiInfo> m_uiInfo;
    FlagCounts m_counts;
    int m_mode = ByCount;
    NotesBrowser *m_browser;
    DockTitleBar *m_titleBar;
    SeenContents *m_contents;
    QTimer *m_minuteTimer; ///< so that ages stay true
    QTimer *m_drawTimer;   ///< runs out as soon as the event loop runs
    QString m_table;       ///< as it stands in m_browser
};
