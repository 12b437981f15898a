#pragma once

#include "gui/common/uiinfo.h"
#include "records/record.h"
#include "store/datastore.h"

#include <QDockWidget>
#include <QPointer>
#include <QVariantMap>

#include <memory>

class SeenContents;

/// The docks that show the one selected record.
namespace RecordViews {

/// The base of those docks. A view doesn't choose a record by itself: the main window hands it one. What a view shows
/// is worked on only while it is seen; one that isn't takes note of the record and the names, and costs nothing more.
class RecordView : public QDockWidget {
    Q_OBJECT
public:
    explicit RecordView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~RecordView() override;

    /// A short name that doesn't change with the language.
    virtual QString viewName() const = 0;
    /// The user's choices in this view, as a window setup stores them. restoreSetup() takes any map: a choice that is
    /// missing in it or makes no sense becomes that of a new view, so that a layout looks the same whatever was there
    /// before. Only the columns of a table stay as they are.
    virtual QVariantMap setup() const { return {}; }
    virtual void restoreSetup(const QVariantMap &) {}

    /// The store of the records to come; null for none. It isn't kept alive.
    void setDatastore(Datastore *datastore) { m_datastore = datastore; }

public Q_SLOTS:
    /// Null when the data go away. An interim record never comes here. The same record comes again when its contents
    /// have changed.
    virtual void showRecord(std::shared_ptr<Record> record);
    /// Names, colours or the list of spectra are others than before.
    virtual void updateSetup();

Q_SIGNALS:
    /// The user made another choice, which setup() holds.
    void setupChanged();

protected:
    const std::shared_ptr<UiInfo> &uiInfo() const { return m_uiInfo; }
    Datastore *datastore() const { return m_datastore; }               ///< null when it is gone
    const std::shared_ptr<Record> &record() const { return m_record; } ///< may be null

    /// Takes up the names, colours and variables of uiInfo(). refreshRecord() follows.
    virtual void refreshSetup() {}
    /// Shows record(). A null one comes also while nothing is seen, so that nothing of it is kept.
    virtual void refreshRecord() = 0;
    /// Has refreshRecord() called: at once if the view is seen, else when it is.
    void setRecordStale();

private:
    void refresh();

    std::shared_ptr<UiInfo> m_uiInfo;
    QPointer<Datastore> m_datastore;
    std::shared_ptr<Record> m_record;
    SeenContents *m_contents;
    bool m_isSetupStale = true;
};

} // namespace RecordViews
