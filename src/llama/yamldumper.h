#pragma once

#include <QByteArray>
#include <QVariant>

class QIODevice;

namespace Llama {

/// False if the value can't be emitted, with a line on the debug output. Never throws.
bool yamlDump(const QVariant &value, QIODevice *device);
/// The text; throws YamlError "Failed to emit yaml document.".
QByteArray yamlDump(const QVariant &value);

} // namespace Llama
