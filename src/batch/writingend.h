#pragma once

#include "batch/exitstatus.h"
#include "batch/folderread.h"
#include "batch/messagecollector.h"
#include "datafiles/writing/plainfileoutput.h"

namespace Batch {

/// Takes into the outcome what reading complained about, and tells of lines that no reader took.
void tellReading(const FolderRead &read, const MessageCollector &messages, Outcome *outcome);
/// The end of a command that has written rows: takes the counts and the complaints into the outcome, which tells
/// already whether the run was interrupted or lost its output otherwise, and tells all that in words.
void tellWriting(const Spectrometer::PlainFileOutput::RowCounts &counts, const QString &folder, const FolderRead &read,
                 const MessageCollector &messages, Outcome *outcome);

} // namespace Batch
