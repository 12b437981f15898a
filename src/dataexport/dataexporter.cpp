#include "dataexport/dataexporter.h"

namespace DataExport {

namespace {

constexpr int mostToldErrors = 100;

} // namespace

void logErrors(const QStringList &errors)
{
    const Log::Logger logger(QStringLiteral("dataexport"));
    for (const QString &error : errors.mid(0, mostToldErrors))
        logger.log(Log::Error, error);
    if (errors.size() > mostToldErrors)
        logger.log(Log::Error, QStringLiteral("%1 more errors.").arg(errors.size() - mostToldErrors));
}

DataExporter::DataExporter(const ExportSetup &setup, ExportTable &table,
                           std::shared_ptr<const Spectrometer::RecordMetadata> metadata, ExistingFile existing)
    : m_table(table), m_naming(setup.general, std::move(metadata)), m_files(table.head(), existing)
{
}

void DataExporter::addRecord(const Record &record)
{
    if (!m_table.takes(record))
        return;
    const DelimitedLine &line = m_table.lineOf(record);
    if (m_files.append(m_naming.pathOf(record), line.data(), line.size()))
        ++m_rows;
    else
        ++m_lost;
}

DataExporter::Result DataExporter::finish()
{
    Result result;
    result.files = m_files.paths().size();
    result.isComplete = m_files.commit();
    result.rows = result.isComplete ? m_rows : 0;
    result.lost = result.isComplete ? m_lost : m_lost + m_rows;
    result.files = result.isComplete ? result.files : 0;
    return result;
}

} // namespace DataExport
