#include "batch/outcome.h"

#include "batch/folderread.h"
#include "batch/messagecollector.h"

#include <cstdio>
#include <new>

namespace Batch {

int Outcome::exitStatus() const
{
    if (interrupted)
        return ExitStatus::Interrupted;
    if (refused)
        return ExitStatus::WrongUsage;
    if (nothingFound || outputLost)
        return ExitStatus::NothingDone;
    return complaints ? ExitStatus::Complaints : ExitStatus::Done;
}

void Outcome::tellReading(const FolderRead &read, const MessageCollector &messages)
{
    complaints = !messages.isEmpty() || read.ignoredRows();
    if (read.ignoredRows())
        tell(QStringLiteral("%1 lines were ignored.").arg(read.reader->statistics().ignoredRows));
}

void Outcome::tellWriting(const Spectrometer::PlainFileOutput::RowCounts &counts, const QString &folder,
                          const FolderRead &read, const MessageCollector &messages)
{
    outputLost = outputLost || counts.lost > 0;
    nothingFound = counts.written == 0 && counts.held == 0 && !outputLost && !interrupted;
    tell(QStringLiteral("%1 rows written to \"%2\"").arg(QString::number(counts.written), folder));
    if (counts.held > 0)
        tell(QStringLiteral("%1 rows were passed over, since the files hold them already; %2 of them differ.")
                 .arg(QString::number(counts.held), QString::number(counts.differing)));
    if (nothingFound)
        tell(QStringLiteral("Nothing to write: the records have none of what is to be saved."));
    if (counts.lost > 0)
        tell(QStringLiteral("%1 rows could not be written.").arg(counts.lost));
    tellReading(read, messages);
    complaints = complaints || counts.differing > 0;
    if (interrupted)
        tell(QStringLiteral("Stopped: later days were not written."));
}

namespace {

Outcome ended(bool Outcome::*how, const QString &words)
{
    Outcome outcome;
    outcome.*how = true;
    tell(words);
    return outcome;
}

} // namespace

Outcome stopped()
{
    return ended(&Outcome::interrupted, QStringLiteral("Stopped: nothing was written."));
}

Outcome refused(const QString &reason)
{
    return ended(&Outcome::refused, reason);
}

Outcome nothing(const QString &reason)
{
    return ended(&Outcome::nothingFound, reason);
}

Outcome outputLost(const QString &reason)
{
    return ended(&Outcome::outputLost, reason);
}

int runCommand(const std::function<int()> &command)
{
    try {
        return command();
    } catch (const std::bad_alloc &) {
        std::fputs("Not enough memory\n", stderr); // which needs none
        return ExitStatus::NothingDone;
    }
}

} // namespace Batch
