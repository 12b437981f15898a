#include "batch/render/rendercommand.h"

#include "batch/folderread.h"
#include "batch/interrupt.h"
#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/outputfolder.h"
#include "batch/render/offscreen.h"
#include "batch/render/stackpicture.h"
#include "datafiles/reading/datafinder.h"
#include "llama/qyaml.h"
#include "util/filereplacement.h"
#include "util/regularfile.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>

namespace Batch {

namespace {

constexpr double dotsPerMeter = 96 / 0.0254; // of logical pixels
constexpr qint64 mostPixels = 1 << 27;       // one and a half GB while it is drawn

/// The list of views of a setup file; empty without a file. False: `fault` says what is wrong with it.
bool readSetup(const QString &path, QVariant *views, QString *fault)
{
    if (path.isEmpty())
        return true;
    QFile file(path);
    if (!openRegularFile(file)) {
        *fault = QStringLiteral("Failed to open interface setup file '%1'").arg(path);
        return false;
    }
    const auto misunderstood = [&](const QString &reason) {
        *fault = QStringLiteral("Failed to understand interface setup file '%1': %2").arg(path, reason);
        return false;
    };
    QVariantList documents;
    try {
        documents = Llama::yamlLoad(&file, QFileInfo(path).fileName());
    } catch (const Llama::Exception &error) {
        return misunderstood(error.message());
    }
    if (documents.isEmpty() || documents.first().type() != QVariant::Map)
        return misunderstood(QStringLiteral("it isn't a map"));
    *views = documents.first().toMap().value(QStringLiteral("timeseries"));
    if (views->type() != QVariant::List)
        return misunderstood(QStringLiteral("it has no list of plots under \"timeseries\""));
    return true;
}

/// False with words: no file, or a whole one, stands there then.
bool write(QImage picture, const QString &path)
{
    const double ratio = picture.devicePixelRatioF();
    picture.setDotsPerMeterX(qRound(dotsPerMeter * ratio));
    picture.setDotsPerMeterY(qRound(dotsPerMeter * ratio));
    QBuffer bytes;
    QImageWriter writer(&bytes, "png");
    QString reason;
    if (!writer.write(picture))
        reason = writer.errorString();
    if (reason.isEmpty())
        reason = makeFolder(QFileInfo(path).absolutePath());
    if (reason.isEmpty())
        reason = replaceFile(path, bytes.data(), ExistingFile::Kept);
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
        return nothing(QStringLiteral("No records %1").arg(textOf(span, options, store.at(0)->beginUtcOffset)));
    const StackPicture picture(*read.reader, setup, span, options.size);
    if (!picture.fault().isEmpty())
        return refused(picture.fault());
    const QSize pixels = picture.size() * options.scale;
    if (qint64(pixels.width()) * pixels.height() > mostPixels)
        return refused(QStringLiteral("The picture would be too large: %1 x %2 pixels")
                           .arg(QString::number(pixels.width()), QString::number(pixels.height())));
    const QImage image = picture.draw();
    if (Interrupt::requested())
        return stopped();
    Outcome outcome;
    outcome.outputLost = !write(image, options.outputFile);
    if (!outcome.outputLost)
        tell(QStringLiteral("%1 x %2 pixels written to \"%3\"")
                 .arg(QString::number(image.width()), QString::number(image.height()), options.outputFile));
    outcome.tellReading(read, messages);
    return outcome;
}

} // namespace

Outcome render(const RenderOptions &options, const MessageCollector &messages)
{
    const QStringList inputs = matchingFiles(options.read);
    if (inputs.isEmpty())
        return nothing(nothingMatchedText(options.read.folder));
    const QFileInfo target(options.outputFile);
    if (target.exists() || target.isSymLink())
        return refused(QStringLiteral("\"%1\" exists.").arg(options.outputFile));
    QString fault = unusableFolder(target.absolutePath());
    if (!fault.isEmpty())
        return refused(fault);
    QVariant setup;
    if (!readSetup(options.setupFile, &setup, &fault))
        return refused(fault);
    fault = Offscreen::fontFault();
    if (!fault.isEmpty())
        return nothing(fault);
    fault = unwritableFolder(target.absolutePath());
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
