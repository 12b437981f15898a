#pragma once

#include "batch/options.h"
#include "datafiles/reading/filereader.h"
#include "datafiles/writing/recordwriting.h"

#include <QStringList>

namespace Batch {

using Spectrometer::SpectraByMode;

/// The day files that a save would write, as far as the names of the files to read tell: their days and modes. Names in
/// the output folder.
QStringList expectedTargets(const SaveOptions &options, const QStringList &inputs);
/// The day files that a save of these records writes, with these spectra.
QStringList targetsOf(const SaveOptions &options, const FileReader &reader, const SpectraByMode &spectra);

/// Why these targets may not be written, or an empty text: one exists and is neither to be continued nor to be
/// replaced, or is one of the inputs under any name.
QString refusal(const SaveOptions &options, const QStringList &inputs, const QStringList &targets);

/// The words about a target that exists, with %1 for its path.
QString refusalOfExisting();

/// All spectra that were read.
SpectraByMode spectraByMode(const FileReader &reader);
/// How the records are written.
Spectrometer::PlainFileOutput::Settings outputSettings(const SaveOptions &options, const FileReader &reader,
                                                       const SpectraByMode &spectra);

/// Day of a record's local begin, as it stands in file names.
QString dayText(const Spectrometer::RecordHead &head);

} // namespace Batch
