#include "dataexport/dataexporter.h"

#include "util/workteam.h"

#include <QFileInfo>

#include <algorithm>

namespace DataExport {

namespace {

constexpr int mostToldErrors = 100;

// Lines are made in pieces of about that many fields: some milliseconds of work, and a few hundred kilobytes.
constexpr std::size_t fieldsOfPiece = 16'384;
constexpr std::size_t mostRecordsOfPiece = 64;
constexpr std::size_t piecesOfWorker = 4;
constexpr int mostWorkers = 16; // more would wait for the one that writes, and their pieces would take more than 32 MB

} // namespace

void logErrors(const QStringList &errors)
{
    const Log::Logger logger(QStringLiteral("dataexport"));
    for (const QString &error : errors.mid(0, mostToldErrors))
        logger.log(Log::Error, error);
    if (errors.size() > mostToldErrors)
        logger.log(Log::Error, QStringLiteral("%1 more errors.").arg(errors.size() - mostToldErrors));
}

/// The lines of some neighbouring records. Each has cache lines of its own: threads write to neighbours.
struct alignas(64) DataExporter::Piece {
    DelimitedLine lines;
    std::vector<std::size_t> ends; ///< of each record's line
};

DataExporter::DataExporter(const ExportSetup &setup, const ExportTable &table,
                           std::shared_ptr<const Spectrometer::RecordMetadata> metadata, ExistingFile existing)
    : m_table(table), m_naming(setup.general, std::move(metadata)), m_files(table.head(), existing),
      m_line(table.emptyLine())
{
}

void DataExporter::append(const Record &record, const char *line, std::size_t size)
{
    if (m_files.append(m_naming.pathOf(record), line, size))
        ++m_rows;
    else
        ++m_lost;
}

void DataExporter::addRecord(const Record &record)
{
    if (!m_table.takes(record))
        return;
    m_line.clear();
    m_table.addLine(record, m_line);
    append(record, m_line.data(), m_line.size());
}

bool DataExporter::addRecords(const Datastore::Records &records, int jobs, const Progress &progress)
{
    WorkTeam team(std::min(jobs, mostWorkers));
    const std::size_t ofPiece = std::clamp<std::size_t>(fieldsOfPiece / m_table.columns(), 1, mostRecordsOfPiece);
    std::vector<Piece> pieces(piecesOfWorker * std::size_t(team.size()), Piece{m_table.emptyLine(), {}});
    for (std::size_t begin = 0; begin < records.size(); begin += ofPiece * pieces.size()) {
        if (!progress(int(begin)))
            return false;
        const std::size_t end = std::min(begin + ofPiece * pieces.size(), records.size());
        team.run((end - begin + ofPiece - 1) / ofPiece, [&](std::size_t number) {
            Piece &piece = pieces[number];
            piece.lines.clear();
            piece.ends.clear();
            const std::size_t first = begin + number * ofPiece;
            for (std::size_t i = first; i < std::min(first + ofPiece, end); ++i) {
                if (m_table.takes(*records[i]))
                    m_table.addLine(*records[i], piece.lines);
                piece.ends.push_back(piece.lines.size());
            }
        });
        for (std::size_t i = begin; i < end; ++i) {
            const Piece &piece = pieces[(i - begin) / ofPiece];
            const std::size_t place = (i - begin) % ofPiece;
            const std::size_t from = place == 0 ? 0 : piece.ends[place - 1];
            if (piece.ends[place] > from)
                append(*records[i], piece.lines.data() + from, piece.ends[place] - from);
        }
    }
    return progress(int(records.size()));
}

DataExporter::Result DataExporter::finish()
{
    Result result;
    result.files = m_files.paths().size();
    result.isComplete = m_files.commit();
    result.lasts = m_files.areNamesOnDisk();
    result.rows = result.isComplete ? m_rows : 0;
    result.lost = result.isComplete ? m_lost : m_lost + m_rows;
    result.files = result.isComplete ? result.files : 0;
    return result;
}

QString resultText(const DataExporter::Result &result, const QStringList &targets)
{
    const QString rows = QString::number(result.rows);
    if (targets.size() == 1)
        return QStringLiteral("%1 rows written to \"%2\"").arg(rows, targets.first());
    return QStringLiteral("%1 rows written to %2 files in \"%3\"")
        .arg(rows, QString::number(result.files), QFileInfo(targets.first()).path());
}

QString lossText(const DataExporter::Result &result)
{
    return result.lost > 0 ? QStringLiteral("%1 rows could not be written.").arg(result.lost) : QString();
}

} // namespace DataExport
