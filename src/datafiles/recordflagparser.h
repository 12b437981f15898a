#pragma once

#include "records/recordflag.h"

#include <memory>

namespace Spectrometer {

/// Makes a flag from its definition: YAML that is a text, or a map with the keys "message" and "type" ("note",
/// "warning", "failure"). Whatever can't be read so is a note whose message is the whole text. A map without "message"
/// has an empty message.
std::shared_ptr<RecordFlag> makeRecordFlag(const QString &text);

} // namespace Spectrometer
