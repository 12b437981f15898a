#include "batch/folderread.h"

#include "batch/interrupt.h"
#include "datafiles/reading/datafinder.h"
#include "datafiles/reading/filereadertask.h"
#include "terminal/progressline.h"

#include <QDateTime>

namespace Batch {

namespace {

/// Shows the file at hand, its number and the per cent of all bytes.
void showProgressOf(FileReaderTask &task, int fileCount)
{
    struct State {
        QString message;
        double done = 0;
    };
    auto state = std::make_shared<State>();
    const auto show = [state] {
        ProgressLine::show(QStringLiteral("%1, %2 %").arg(state->message, QString::number(int(state->done * 100))),
                           state->done);
    };
    QObject::connect(&task, &FileReaderTask::progress, &task, [state, show, fileCount](int count, const QString &text) {
        state->message =
            QStringLiteral("%1 (%2 of %3)").arg(text, QString::number(count + 1), QString::number(fileCount));
        show();
    });
    QObject::connect(&task, &FileReaderTask::bytesProgress, &task, [state, show](qint64 done, qint64 total) {
        state->done = total > 0 ? double(done) / double(total) : 1;
        show();
    });
}

} // namespace

QStringList matchingFiles(const ReadOptions &options)
{
    return findDataFiles({{QStringLiteral("folderName"), options.folder},
                          {QStringLiteral("variant"), options.variant},
                          {QStringLiteral("legacyFiles"), options.legacy},
                          {QStringLiteral("limitBegin"), options.from.isValid()},
                          {QStringLiteral("limitEnd"), options.to.isValid()},
                          {QStringLiteral("beginTime"), options.from.startOfDay()},
                          {QStringLiteral("endTime"), options.to.startOfDay()}});
}

FolderRead readFolder(const ReadOptions &options, const QStringList &files, const QString &variantName)
{
    FolderRead result;
    result.reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    FileReaderSettings settings;
    settings.files = files;
    settings.folder = options.folder;
    settings.assumedOpmode = options.assumedOpmode;
    settings.threads = options.jobs;
    FileReaderTask task(result.reader, settings);
    {
        const Interrupt::ForwardTo forward(task);
        showProgressOf(task, files.size());
        task.run();
    }
    ProgressLine::clear();
    DpVariant variant;
    variant.name = variant.shortName = variantName;
    result.reader->metadata()->dpVariants.insert(0, variant);
    result.files = task.filesRead();
    result.seconds = task.seconds();
    result.interrupted = Interrupt::requested();
    return result;
}

} // namespace Batch
