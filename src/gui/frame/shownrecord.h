#pragma once

#include "gui/common/uiinfo.h"
#include "log/logger.h"
#include "store/datastore.h"

#include <QObject>

#include <memory>

/// Where a jump from the shown record leads.
enum JumpCmd { NextRecord, PreviousRecord, NextRecordOfMode, PreviousRecordOfMode };

/// Owns the choice of the one record that is shown. The user moves it, which ends following the latest; while
/// following, records that come in move it. Main thread only.
class ShownRecord : public QObject {
    Q_OBJECT
public:
    using RecordPointer = std::shared_ptr<Record>;
    enum Mover { User, Follower };

    ShownRecord(std::shared_ptr<const UiInfo> uiInfo, QObject *parent);

    const RecordPointer &record() const { return m_record; }                    ///< may be null
    const std::shared_ptr<Datastore> &datastore() const { return m_datastore; } ///< may be null
    bool isFollowing() const { return m_isFollowing; }

    /// Forgets the records of the old store, and shows none. Following goes on with setFollowing().
    void setDatastore(std::shared_ptr<Datastore> store);

    /// On a wish of the user.
    void show(const RecordPointer &record);
    /// For senders that may fire many times in a row: the last of one pass of the event loop is shown.
    void showDelayed(const RecordPointer &record);
    void showDelayedNow();
    /// True shows the latest record at once.
    void setFollowing(bool on);
    /// Nothing happens where there is no such record.
    void jump(JumpCmd command);
    /// Nothing more comes for now: a record that waits for its spectra, or has none, waits no longer.
    void showHeldBack();
    /// Heeds the store's news of a record; the flags are those of Datastore::updated.
    void recordUpdated(const RecordPointer &record, int flags);

Q_SIGNALS:
    void changed(const std::shared_ptr<Record> &record, ShownRecord::Mover mover);
    /// The record is the same, its contents have changed.
    void contentsChanged();
    void followingChanged(bool on);

private:
    void moveTo(const RecordPointer &record, Mover mover);
    void recordCameIn(const RecordPointer &record);
    DpVariant variantOf(const Record &record) const;
    bool isOffset(const Record &record) const;

    const std::shared_ptr<const UiInfo> m_uiInfo;
    const Log::Logger m_logger;
    std::shared_ptr<Datastore> m_datastore;
    RecordPointer m_record;
    RecordPointer m_delayed; ///< the last one asked for through showDelayed
    RecordPointer m_last;    ///< the latest that came in
    bool m_isFollowing = false;
    bool m_spectraPending = false; ///< the shown record's spectra changed; the record to follow is held back
    bool m_isMoving = false;       ///< by itself: the signal that comes back is no wish of the user
};
