#pragma once

#include "batch/messagecollector.h"
#include "batch/summary.h"

namespace Batch {

/// The JSON object, in UTF-8, ended by a line feed. Messages are those of the log.
QByteArray summaryJson(const Summary &summary, const MessageCollector &messages);
/// The same for people.
QByteArray summaryForPeople(const Summary &summary, const MessageCollector &messages);

} // namespace Batch
