#include "batch/exitstatus.h"

namespace Batch {

int exitStatus(const Outcome &outcome)
{
    if (outcome.interrupted)
        return ExitStatus::Interrupted;
    if (outcome.refused)
        return ExitStatus::WrongUsage;
    if (outcome.nothingFound || outcome.outputLost)
        return ExitStatus::NothingDone;
    return outcome.complaints ? ExitStatus::Complaints : ExitStatus::Done;
}

} // namespace Batch
