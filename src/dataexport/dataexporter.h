#pragma once

#include "dataexport/exportfiles.h"
#include "dataexport/exportnaming.h"
#include "dataexport/exporttable.h"
#include "store/datastore.h"

#include <functional>

namespace DataExport {

/// Writes the records that it is given into the files of a table. Until finish() none of the files stands in its place;
/// without finish() nothing is left.
class DataExporter {
public:
    /// What an export has come to.
    struct Result {
        bool isComplete = false; ///< all files that could be opened stand in their places
        bool lasts = true;       ///< and stand there after a power failure, too
        qint64 rows = 0;         ///< in these
        qint64 lost = 0;         ///< rows of records that were given and stand nowhere
        int files = 0;
    };

    /// The table must outlive the exporter. What is wrong with setup and table is left to the caller to tell.
    DataExporter(const ExportSetup &setup, const ExportTable &table,
                 std::shared_ptr<const Spectrometer::RecordMetadata> metadata, ExistingFile existing);

    /// In ascending order of time. A record whose mode isn't to be exported is passed over.
    void addRecord(const Record &record);
    /// Asked now and then, and at the end, with the number of records done; false ends the export there.
    using Progress = std::function<bool(int done)>;
    /// Adds all of these records. `jobs` threads, but no more than 16, make the lines, the calling one among them; none
    /// of them works while the progress is asked for, so that the records may change then. False if the export was
    /// ended.
    bool addRecords(const Datastore::Records &records, int jobs, const Progress &progress);
    Result finish();

private:
    struct Piece;

    void append(const Record &record, const char *line, std::size_t size);

    const ExportTable &m_table;
    ExportNaming m_naming;
    ExportFiles m_files;
    DelimitedLine m_line;
    qint64 m_rows = 0;
    qint64 m_lost = 0;
};

/// What became of it, in words; the paths are those of its files.
QString resultText(const DataExporter::Result &result, const QStringList &targets);
/// The rows that stand nowhere, in words; null if there are none.
QString lossText(const DataExporter::Result &result);

/// The error lines in the log, the first hundred of them each.
void logErrors(const QStringList &errors);

} // namespace DataExport
