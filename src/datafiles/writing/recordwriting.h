#pragma once

#include "datafiles/writing/plainfileoutput.h"
#include "store/datastore.h"

#include <functional>

/// How the records of a store go into day files: the same for every front end, so that their files are equal.
namespace Spectrometer {

/// Spectra in the order of their columns, by the name of the operating mode.
using SpectraByMode = QMap<QString, QVector<SpectMath::SpectrumInfoPointer>>;

/// Which of these descriptions each mode's files may have, in their order: those of the mode by their own word, and
/// those that the mode's records hold.
SpectraByMode spectraByMode(const Datastore &store, const RecordMetadata &metadata,
                            const QVector<SpectMath::SpectrumInfoPointer> &infos);

/// Tells the log how many spectra no file takes because the mode of their records isn't known.
void warnOfSpectraWithoutMode(const Datastore &store);

/// One file a day, one variant of that name, for all records that were read.
PlainFileOutput::Settings dayFileSettings(const QString &folder, const QString &variant,
                                          std::shared_ptr<const RecordMetadata> metadata);

/// The spectra that are written of a record; asked once for each, in order.
using SpectraSource = std::function<const SpectMath::SpectrumPointerList &(const Record &record)>;
/// Asked before each record and once more behind the last, with how many are done; false ends the writing there.
using WriteProgress = std::function<bool(int done)>;

/// Writes the rows of all records in order, of each its spectra, record, currents and diagnostics, as far as the output
/// has files for them. `jobs` threads, the calling one among them, make the rows some records ahead; none of them works
/// while the progress is asked for. The files are the same for any number of them. Of each file the first row that is
/// lost is logged, all are in the output's counts(). False if it was ended before the last record.
bool writeRecords(PlainFileOutput &output, const Datastore &store, int jobs, const SpectraSource &spectraOf,
                  const WriteProgress &progress);
/// The same with each record's own spectra.
bool writeRecords(PlainFileOutput &output, const Datastore &store, int jobs, const WriteProgress &progress);

} // namespace Spectrometer
