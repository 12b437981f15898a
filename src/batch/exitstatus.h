#pragma once

namespace Batch {

/// What the program's exit status says. Fixed: scripts depend on it.
namespace ExitStatus {
constexpr int Done = 0;
constexpr int NothingDone = 1; ///< nothing found, or an output could not be written
constexpr int WrongUsage = 2;  ///< or refused
constexpr int Complaints = 3;  ///< done, with warnings or errors, or with rows that no reader took
constexpr int Interrupted = 130;
} // namespace ExitStatus

/// What a command met.
struct Outcome {
    bool interrupted = false;
    bool refused = false;
    bool nothingFound = false;
    bool outputLost = false;
    bool complaints = false;
};

/// The one status for it, the gravest first.
int exitStatus(const Outcome &outcome);

} // namespace Batch
