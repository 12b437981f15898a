#pragma once

#include <QByteArray>
#include <QVariant>

class QIODevice;

namespace Llama {

/// False if the value can't be emitted, with a line on the debug output. Never throws.
bool yamlDump(const QVariant &value, QIODevice *device);
/// The text; throws YamlError "Failed to emit yaml document.", and bad_alloc where memory runs out: a file must not be
/// taken for one that can't be described.
QByteArray yamlDump(const QVariant &value);

} // namespace Llama
