#pragma once

#include "datafiles/writing/recordwriting.h"

namespace Batch {

struct Outcome;
class StagedOutput;

/// Writes the rows of all records in order and shows the progress under that verb, then closes the files. `jobs` as for
/// Spectrometer::writeRecords(). False if it was interrupted, which it is at the end of a day.
bool writeInOrder(Spectrometer::PlainFileOutput &output, const Datastore &store, int jobs, const QString &verb,
                  const Spectrometer::SpectraSource &spectraOf);

/// Puts the files of an output that was written aside into their folder, unless rows of them are missing. The outcome
/// learns whether that was done, and the result counts the rows that stand there.
Spectrometer::PlainFileOutput::RowCounts moveOut(StagedOutput &staged, const QString &folder,
                                                 const Spectrometer::PlainFileOutput &output, Outcome &outcome);

} // namespace Batch
