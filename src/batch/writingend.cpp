#include "batch/writingend.h"

namespace Batch {

void tellReading(const FolderRead &read, const MessageCollector &messages, Outcome *outcome)
{
    outcome->complaints = !messages.isEmpty() || read.ignoredRows();
    if (read.ignoredRows())
        tell(QStringLiteral("%1 lines were ignored.").arg(read.reader->statistics().ignoredRows));
}

void tellWriting(const Spectrometer::PlainFileOutput::RowCounts &counts, const QString &folder, const FolderRead &read,
                 const MessageCollector &messages, Outcome *outcome)
{
    outcome->outputLost = outcome->outputLost || counts.lost > 0;
    outcome->nothingFound = counts.written == 0 && !outcome->outputLost && !outcome->interrupted;
    tell(QStringLiteral("%1 rows written to \"%2\"").arg(QString::number(counts.written), folder));
    if (outcome->nothingFound)
        tell(QStringLiteral("Nothing to write: the records have none of what is to be saved."));
    if (counts.lost > 0)
        tell(QStringLiteral("%1 rows could not be written.").arg(counts.lost));
    tellReading(read, messages, outcome);
    if (outcome->interrupted)
        tell(QStringLiteral("Stopped: later days were not written."));
}

} // namespace Batch
