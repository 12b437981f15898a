#pragma once

#include "records/recordflag.h"

#include <memory>

namespace Spectrometer {

/// Makes a flag from its definition: YAML that is a text, or a map with the keys "message" and "type" ("note",
/// "warning", "failure"). Any other text, and one of more than `mostNodes` nodes, is a note whose message is the whole
/// text. A map without "message" has an empty message.
std::shared_ptr<RecordFlag> makeRecordFlag(const QString &text, qint64 mostNodes = 10'000'000);

/// The number of values in a tree, keys and each copy of an alias included: about 110 bytes each.
qint64 nodesOf(const QVariant &tree);

} // namespace Spectrometer
