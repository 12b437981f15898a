#pragma once

#include "gui/common/commentmap.h"
#include "store/datastore.h"

#include <QObject>

#include <functional>
#include <memory>

class CommentView;
class RecordForm;

namespace Tsb {
class TimeSeriesBrowser;
}

/// The comments of the open data as the window has them: in the record form, in the list, and as marks in the browser.
class OpenComments : public QObject {
    Q_OBJECT
public:
    using MapPointer = std::shared_ptr<CommentMap>;
    /// The store of a variant; null if there is none.
    using StoreOf = std::function<std::shared_ptr<Datastore>(int variant)>;

    OpenComments(RecordForm *form, CommentView *list, Tsb::TimeSeriesBrowser *browser, QObject *parent);

    /// The comments in the folder on the records of the store, whose variants and modes the metadata name. Null for
    /// data of a variant without a name: they have no comments.
    static MapPointer read(const QString &folder, const Spectrometer::RecordMetadata &metadata, const Datastore &store);

    const MapPointer &map() const { return m_map; } ///< may be null
    /// Saves the comments of the old map before it goes.
    void setMap(MapPointer map);
    /// Takes up what is typed in the form, and tries again what could not be written.
    void save();
    /// Forgets the comments on records that aren't there.
    void removeOrphans(const StoreOf &storeOf);
    /// The record of a row of the list; null for a row out of range and for a record that isn't in the store.
    std::shared_ptr<Record> recordOfRow(int row, const Datastore &store) const;

private:
    RecordForm *m_form;
    CommentView *m_list;
    Tsb::TimeSeriesBrowser *m_browser;
    MapPointer m_map;
};
