#pragma once

#include "batch/messagecollector.h"
#include "batch/summary.h"
#include "datafiles/reading/folderoverview.h"

namespace Batch {

/// The JSON object, in UTF-8, ended by a line feed. Messages are those of the log.
QByteArray summaryJson(const Summary &summary, const MessageCollector &messages);
/// The same for people.
QByteArray summaryForPeople(const Summary &summary, const MessageCollector &messages);

// What names and headers tell.
QByteArray overviewJson(const FolderOverview &overview, const MessageCollector &messages);
QByteArray overviewForPeople(const FolderOverview &overview, const MessageCollector &messages);

} // namespace Batch
