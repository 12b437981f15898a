#pragma once

#include "records/recordflag.h"

#include <memory>

namespace Spectrometer {

/// Makes a flag from its definition: YAML that is a text, or a map with the keys "message" and "type" ("note",
/// "warning", "failure"). Whatever can't be read so is a note whose message is the whole text. A map without "message"
/// has an empty message. So is a text of more than that many nodes.
std::shared_ptr<RecordFlag> makeRecordFlag(const QString &text, qint64 mostNodes = 10'000'000);

/// How many values a tree holds, keys counted, and each copy of an alias: about 110 bytes each.
qint64 nodesOf(const QVariant &tree);

} // namespace Spectrometer
