#pragma once

#include "batch/exitstatus.h"

#include <QString>

namespace Batch {

// The ends of a command that has written nothing, told in words.

/// The user stopped it.
Outcome stopped();
Outcome refused(const QString &reason);
Outcome nothing(const QString &reason);

} // namespace Batch
