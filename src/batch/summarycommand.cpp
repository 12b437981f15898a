#include "batch/summarycommand.h"

#include "batch/interrupt.h"
#include "batch/outcome.h"
#include "batch/summarytext.h"
#include "datafiles/reading/datafinder.h"
#include "terminal/progressline.h"

#include <QDir>

#include <cstdio>

namespace Batch {

namespace {

bool print(const QByteArray &text)
{
    return std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) == std::size_t(text.size()) &&
           std::fflush(stdout) == 0;
}

/// A folder is given where nothing in it matched.
int finish(Outcome outcome, const QByteArray &summary, const QString &unmatchedFolder)
{
    outcome.outputLost = !print(summary);
    if (outcome.outputLost)
        tell(QStringLiteral("The summary could not be written."));
    if (!unmatchedFolder.isNull())
        tell(nothingMatchedText(unmatchedFolder));
    return outcome.exitStatus();
}

/// Tells what was looked at until the end, or until the user stopped it.
int runQuickSummary(const SummaryOptions &options)
{
    const MessageCollector messages(false);
    QStringList files = matchingFiles(options.read);
    files.sort(Qt::CaseSensitive); // as they are read
    const QDir folder(options.read.folder);
    FolderSurvey survey;
    Outcome outcome;
    int done = 0;
    for (const QString &file : qAsConst(files)) {
        outcome.interrupted = Interrupt::requested();
        if (outcome.interrupted)
            break;
        ProgressLine::show(
            QStringLiteral("%1 (%2 of %3)").arg(file, QString::number(done + 1), QString::number(files.size())),
            done / double(files.size()));
        survey.add(folder.filePath(file));
        ++done;
    }
    ProgressLine::clear();
    const FolderOverview overview = survey.overview();
    outcome.nothingFound = files.isEmpty();
    outcome.complaints = !messages.isEmpty() || overview.withoutHeader > 0;
    return finish(outcome, options.json ? overviewJson(overview, messages) : overviewForPeople(overview, messages),
                  files.isEmpty() ? options.read.folder : QString());
}

} // namespace

int runSummary(const SummaryOptions &options)
{
    if (options.quick)
        return runQuickSummary(options);
    const MessageCollector messages(false);
    const QStringList files = matchingFiles(options.read);
    const FolderRead read = readFolder(options.read, files, options.read.variant);
    const Summary summary = makeSummary(read);

    Outcome outcome;
    outcome.interrupted = read.interrupted;
    outcome.nothingFound = !read.hasRecords();
    outcome.complaints = !messages.isEmpty() || read.ignoredRows();
    return finish(outcome, options.json ? summaryJson(summary, messages) : summaryForPeople(summary, messages),
                  files.isEmpty() ? options.read.folder : QString());
}

} // namespace Batch
