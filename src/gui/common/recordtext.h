#pragma once

#include "records/record.h"

#include <QString>

/// The texts that describe a record in the record form.
namespace RecordText {

/// The offset in whole minutes, as "+2" or "-3:30"; empty for 0.
QString zone(std::int64_t utcOffset);

/// Local times. A record without an end has its begin as the end, and none as the begin.
struct Times {
    QString date; ///< with the zone
    QString begin;
    QString end;
};
Times times(const Spectrometer::RecordHead &head);

/// The local begin of a record, as "2024-05-31 12:30:00".
QString moment(const Spectrometer::RecordHead &head);

/// HTML of the notes about the record: that it is provisional, and its flags, as links whose address is the
/// flag's place in the record. Empty if there is nothing. Of more than 1000 flags the rest is counted only.
QString notes(const Record &record);

} // namespace RecordText
