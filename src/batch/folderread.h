#pragma once

#include "batch/options.h"
#include "datafiles/reading/filereader.h"

#include <memory>

namespace Batch {

/// The result of reading a folder.
struct FolderRead {
    std::shared_ptr<FileReader> reader;
    int files = 0;
    double seconds = 0;
    bool interrupted = false; ///< files may be left unread

    bool hasRecords() const { return !reader->datastore()->isEmpty(); }
    /// Lines were passed over in silence.
    bool ignoredRows() const { return reader->statistics().ignoredRows > 0; }
};

/// The names of the day files to read.
QStringList matchingFiles(const ReadOptions &options);
/// Reads them on the calling thread; faults go to the log. `variantName` is the name of the records' variant.
FolderRead readFolder(const ReadOptions &options, const QStringList &files, const QString &variantName);

} // namespace Batch
