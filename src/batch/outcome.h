#pragma once

#include "datafiles/writing/plainfileoutput.h"

#include <QString>

#include <functional>

namespace Batch {

class MessageCollector;
struct FolderRead;

/// The meanings of the program's exit status. Fixed: scripts depend on them.
namespace ExitStatus {
constexpr int Done = 0;
constexpr int NothingDone = 1; ///< nothing found, or an output could not be written
constexpr int WrongUsage = 2;  ///< or refused
constexpr int Complaints = 3;  ///< done, with warnings or errors, or with rows that no reader took
constexpr int Interrupted = 130;
} // namespace ExitStatus

/// The events of a run that decide its exit status.
struct Outcome {
    bool interrupted = false;
    bool refused = false;
    bool nothingFound = false;
    bool outputLost = false;
    bool complaints = false;

    /// The one status for it, the gravest first.
    int exitStatus() const;

    /// Takes in the complaints of reading, and tells of lines that no reader took.
    void tellReading(const FolderRead &read, const MessageCollector &messages);
    /// The end of a command that has written rows: takes in the counts and the complaints, and tells all in words.
    /// Whether the run was interrupted or lost its output otherwise is in the outcome already.
    void tellWriting(const Spectrometer::PlainFileOutput::RowCounts &counts, const QString &folder,
                     const FolderRead &read, const MessageCollector &messages);
};

// The ends of a command that has written nothing, told in words.

/// The user stopped it.
Outcome stopped();
/// The command may not be done.
Outcome refused(const QString &reason);
/// There is nothing to do it with.
Outcome nothing(const QString &reason);
/// The output can't be written.
Outcome outputLost(const QString &reason);

// ----

/// Runs a command, the result of which is the exit status. One that runs out of memory has done nothing, or a part,
/// which is told.
int runCommand(const std::function<int()> &command);

} // namespace Batch
