#include "batch/summarycommand.h"

#include "batch/outcome.h"
#include "batch/summarytext.h"
#include "datafiles/reading/datafinder.h"

#include <cstdio>

namespace Batch {

namespace {

bool print(const QByteArray &text)
{
    return std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) == std::size_t(text.size()) &&
           std::fflush(stdout) == 0;
}

} // namespace

int runSummary(const SummaryOptions &options)
{
    const MessageCollector messages(false);
    const QStringList files = matchingFiles(options.read);
    const FolderRead read = readFolder(options.read, files, options.read.variant);
    const Summary summary = makeSummary(read);

    Outcome outcome;
    outcome.interrupted = read.interrupted;
    outcome.nothingFound = !read.hasRecords();
    outcome.complaints = !messages.isEmpty() || read.ignoredRows();
    outcome.outputLost = !print(options.json ? summaryJson(summary, messages) : summaryForPeople(summary, messages));
    if (outcome.outputLost)
        tell(QStringLiteral("The summary could not be written."));
    if (files.isEmpty())
        tell(nothingMatchedText(options.read.folder));
    return outcome.exitStatus();
}

} // namespace Batch
