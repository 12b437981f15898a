#include "batch/render/rendercommand.h"

#include "batch/folderread.h"
#include "batch/interrupt.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "batch/render/offscreen.h"
#include "batch/render/stackpicture.h"
#include "datafiles/reading/datafinder.h"
#include "util/fileid.h"
#include "util/filereplacement.h"
#include "windowsetup/setupfile.h"
#include "windowsetup/setupkeys.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Batch {

namespace {

/// The list of views of a setup file; empty without a file. False: `fault` says what is wrong with it.
bool readSetup(const QString &path, QVariant *views, QString *fault)
{
    if (path.isEmpty())
        return true;
    const WindowSetup::SetupFile file = WindowSetup::readSetupFile(path);
    if (file.condition != WindowSetup::SetupFile::Sound) {
        *fault = file.complaint;
        return false;
    }
    *views = file.setup.value(QLatin1String(WindowSetup::Keys::timeseries));
    if (views->type() == QVariant::List)
        return true;
    *fault = QStringLiteral("Failed to understand interface setup file '%1': it has no list of plots under "
                            "\"timeseries\"")
                 .arg(path);
    return false;
}

/// False with words: no file, or a whole one, stands there then.
bool write(const QByteArray &content, const QString &path, bool overwrite)
{
    QString reason = makeFolder(QFileInfo(path).absolutePath());
    if (reason.isEmpty())
        reason = replaceFile(path, content, overwrite ? ExistingFile::Replaced : ExistingFile::Kept);
    if (!reason.isEmpty())
        tell(QStringLiteral("\"%1\" could not be written: %2").arg(path, reason));
    return reason.isEmpty();
}

Outcome draw(const RenderOptions &options, const QVariant &setup, const FolderRead &read,
             const MessageCollector &messages)
{
    const Datastore &store = *read.reader->datastore();
    const TimeSpan span = spanToShow(options, store);
    if (!hasRecordsIn(span, store))
        return nothing(QStringLiteral("No records %1").arg(textOf(span, options)));
    const StackPicture picture(*read.reader, setup, span, options.size);
    if (!picture.fault().isEmpty())
        return refused(picture.fault());
    const bool isPixels = PictureFile::isPixelFile(options.outputFile);
    const QSize size = isPixels ? picture.size() * options.scale : picture.size();
    const QString tooLarge = isPixels ? PictureFile::sizeFault(size) : QString();
    if (!tooLarge.isEmpty())
        return refused(tooLarge);
    QByteArray content;
    const QString fault =
        PictureFile::encode(PictureFile::draw(picture.drawing(), options.outputFile, options.scale), &content);
    if (Interrupt::requested())
        return stopped();
    if (!fault.isNull())
        return outputLost(fault);
    Outcome outcome;
    outcome.outputLost = !write(content, options.outputFile, options.overwrite);
    if (!outcome.outputLost)
        tell(QStringLiteral("%1 x %2 pixels written to \"%3\"")
                 .arg(QString::number(size.width()), QString::number(size.height()), options.outputFile));
    outcome.tellReading(read, messages);
    return outcome;
}

/// The reason why the picture's file may not be written; empty if it may.
QString refusal(const RenderOptions &options, const QStringList &inputs)
{
    const QFileInfo target(options.outputFile);
    if (!target.exists() && !target.isSymLink())
        return unusableFolder(target.absolutePath());
    if (!options.overwrite)
        return QStringLiteral("\"%1\" exists. Use --overwrite to replace it, or give another name to --output.")
            .arg(options.outputFile);
    if (target.exists() && !target.isFile())
        return QStringLiteral("\"%1\" can't be replaced, since it isn't a file.").arg(options.outputFile);
    QStringList files{options.setupFile};
    for (const QString &input : inputs)
        files << QDir(options.read.folder).filePath(input);
    const auto id = fileIdOf(options.outputFile);
    const bool isRead =
        id && std::any_of(files.begin(), files.end(), [&](const QString &file) { return fileIdOf(file) == id; });
    return isRead ? QStringLiteral("\"%1\" is one of the files to read.").arg(options.outputFile) : QString();
}

} // namespace

Outcome render(const RenderOptions &options, const MessageCollector &messages)
{
    const QStringList inputs = matchingFiles(options.read);
    if (inputs.isEmpty())
        return nothing(nothingMatchedText(options.read.folder));
    QString fault = refusal(options, inputs);
    if (!fault.isEmpty())
        return refused(fault);
    QVariant setup;
    if (!readSetup(options.setupFile, &setup, &fault))
        return refused(fault);
    fault = Offscreen::fontFault();
    if (!fault.isEmpty())
        return nothing(fault);
    fault = unwritableFolder(QFileInfo(options.outputFile).absolutePath());
    if (!fault.isEmpty())
        return outputLost(fault);

    const FolderRead read = readFolder(options.read, inputs, options.read.variant);
    if (read.interrupted)
        return stopped();
    if (!read.hasRecords())
        return nothing(QStringLiteral("Nothing found"));
    return draw(options, setup, read, messages);
}

int runRender(const RenderOptions &options)
{
    const MessageCollector messages(true, MessageCollector::AllButToolkit);
    const auto application = Offscreen::makeApplication(options.scale);
    return render(options, messages).exitStatus();
}

} // namespace Batch
