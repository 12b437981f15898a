#pragma once

#include "records/fullrecord.h"

#include <QHash>

#include <memory>

/// A flag among the records that were counted.
struct FlagStatus {
    std::shared_ptr<Spectrometer::RecordFlag> flag;
    RecordTime lastEnd{};   ///< the latest end of a record with the flag
    std::int32_t count = 0; ///< of records; one that has the flag twice counts twice
};

/// How often, and how recently, records carried each flag.
class FlagCounts {
public:
    using Flag = Spectrometer::RecordFlag;

    /// Whether a flag is new, or more recent than before.
    bool add(const Spectrometer::FullRecord &record);
    void clear() { m_statuses.clear(); }
    /// Drops the flags that were last seen before that moment.
    void forgetBefore(RecordTime moment);

    const QHash<const Flag *, FlagStatus> &statuses() const { return m_statuses; }

    /// A flag's key in an address, and the flag of a key; null for any other text.
    static QString keyOf(const Flag *flag);
    std::shared_ptr<Flag> flagOf(const QString &key) const;

private:
    QHash<const Flag *, FlagStatus> m_statuses;
};
