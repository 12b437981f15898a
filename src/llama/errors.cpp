#include "llama/errors.h"

namespace Llama {

YamlError::YamlError(const QString &sourceName, const QString &message)
    : Exception(sourceName.isEmpty() ? message : QStringLiteral("(%1) %2").arg(sourceName, message))
{
}

} // namespace Llama
