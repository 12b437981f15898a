#pragma once

#include "records/fullrecord.h"
#include "records/recordmetadata.h"

#include <QString>

namespace RecordViews {

/// The record's mode, times and electrometers as lines of comma-separated values with six digits, a column for each
/// electrometer of the metadata. A value that isn't there is empty.
QString electrometersText(const Spectrometer::FullRecord &record, const Spectrometer::RecordMetadata &metadata);

/// The deviation that belongs to a variance; not-a-number where there is none.
double deviationOf(double variance);
/// The element, or not-a-number where the vector is too short: a record may have fewer than its metadata say.
double valueAt(const RealVector &values, int index);

} // namespace RecordViews
