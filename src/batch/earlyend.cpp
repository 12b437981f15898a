#include "batch/earlyend.h"

#include "batch/messagecollector.h"

namespace Batch {

Outcome stopped()
{
    Outcome outcome;
    outcome.interrupted = true;
    tell(QStringLiteral("Stopped: nothing was written."));
    return outcome;
}

Outcome refused(const QString &reason)
{
    Outcome outcome;
    outcome.refused = true;
    tell(reason);
    return outcome;
}

Outcome nothing(const QString &reason)
{
    Outcome outcome;
    outcome.nothingFound = true;
    tell(reason);
    return outcome;
}

} // namespace Batch
