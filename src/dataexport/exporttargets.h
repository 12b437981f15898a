#pragma once

#include "dataexport/exportsetup.h"
#include "dataexport/exporttable.h"
#include "store/datastore.h"

#include <QStringList>

namespace DataExport {

/// The paths of the files that an export of these records writes, sorted.
QStringList exportTargets(const GeneralSettings &general, const ExportTable &table,
                          const std::shared_ptr<const Spectrometer::RecordMetadata> &metadata,
                          const Datastore::Records &records);

/// Why one of these paths may never be written to, in words; null if all may. Refused are the given files, under any
/// name or link, and whatever stands there and is called as a day, comment, layout, inverter or setup file is.
QString refusalOf(const QStringList &targets, const QStringList &files);

/// Those of the paths at which something stands.
QStringList existingOf(const QStringList &targets);

} // namespace DataExport
