#include "batch/savetargets.h"

#include "util/fileid.h"
#include "util/filenamepart.h"
#include "util/timeformat.h"

#include <QDir>
#include <QFileInfo>
#include <QRegExp>
#include <QSet>

namespace Batch {

namespace {

using Spectrometer::PlainFileOutput;

QString recordsName(const QString &day, const SaveOptions &options)
{
    return QStringLiteral("%1-%2.records").arg(day, fileNamePart(options.outputVariant));
}

QString spectraName(const QString &day, const SaveOptions &options, const QString &mode)
{
    return QStringLiteral("%1-%2-%3.spectra").arg(day, fileNamePart(options.outputVariant), fileNamePart(mode));
}

QStringList sorted(const QSet<QString> &names)
{
    QStringList list = names.values();
    list.sort();
    return list;
}

} // namespace

QStringList expectedTargets(const SaveOptions &options, const QStringList &inputs)
{
    const QString variant = options.read.variant.isEmpty() ? QString() : QLatin1Char('-') + options.read.variant;
    QRegExp dayFile(QStringLiteral("(\\d{4})-?(\\d{2})-?(\\d{2}).*"));
    QRegExp spectraFile(QStringLiteral("\\d{4}-?\\d{2}-?\\d{2}(?:%1)-(.*)\\.spectra").arg(variant));
    QSet<QString> names;
    for (const QString &input : inputs) {
        if (!dayFile.exactMatch(input))
            continue;
        const QString day = dayFile.cap(1) + dayFile.cap(2) + dayFile.cap(3);
        if (options.records)
            names.insert(recordsName(day, options));
        // The variant is a pattern and may hold captures of its own; the mode is the last.
        if (spectraFile.exactMatch(input))
            names.insert(spectraName(day, options, spectraFile.cap(spectraFile.captureCount())));
    }
    return sorted(names);
}

SpectraByMode spectraByMode(const FileReader &reader)
{
    return Spectrometer::spectraByMode(*reader.datastore(), *reader.metadata(), reader.spectrumInfos());
}

QString dayText(const Spectrometer::RecordHead &head)
{
    return timeToString(localTime(head.beginTime, head.beginUtcOffset), QStringLiteral("%Y%m%d"));
}

QStringList targetsOf(const SaveOptions &options, const FileReader &reader, const SpectraByMode &spectra)
{
    QSet<QString> names;
    QSet<std::pair<QString, int>> seen; // day and mode: names are made once for each
    for (const auto &record : reader.datastore()->records()) {
        const QString day = dayText(*record);
        if (seen.contains({day, record->opmode}))
            continue;
        seen.insert({day, record->opmode});
        if (options.records)
            names.insert(recordsName(day, options));
        const QString mode = reader.metadata()->opmodeName(record->opmode);
        if (!spectra.value(mode).isEmpty())
            names.insert(spectraName(day, options, mode));
    }
    return sorted(names);
}

Spectrometer::PlainFileOutput::Settings outputSettings(const SaveOptions &options, const FileReader &reader,
                                                       const SpectraByMode &spectra)
{
    auto settings = Spectrometer::dayFileSettings(options.outputFolder, options.outputVariant, reader.metadata());
    settings.variants[0].records = options.records;
    settings.inversionVars = options.inversionVars;
    settings.spectra = spectra;
    return settings;
}

QString refusalOfExisting()
{
    return QStringLiteral("\"%1\" exists. Use --append to continue files or --overwrite to replace them, or "
                          "give another --output or --output-variant.");
}

QString refusal(const SaveOptions &options, const QStringList &inputs, const QStringList &targets)
{
    const QDir inputFolder(options.read.folder);
    const QDir outputFolder(options.outputFolder);
    QSet<FileId> inputIds;
    for (const QString &input : inputs)
        if (const auto id = fileIdOf(inputFolder.filePath(input)))
            inputIds.insert(*id);
    for (const QString &target : targets) {
        const QString path = outputFolder.filePath(target);
        const auto id = fileIdOf(path);
        if (!id)
            continue;
        if (inputIds.contains(*id))
            return QStringLiteral("\"%1\" is one of the files to read. Give another --output or --output-variant.")
                .arg(path);
        if (!options.append && !options.overwrite)
            return refusalOfExisting().arg(path);
        if (options.overwrite && !QFileInfo(path).isFile())
            return QStringLiteral("\"%1\" can't be replaced, since it isn't a file.").arg(path);
    }
    return QString();
}

} // namespace Batch
