#include "dataexport/exporttargets.h"

#include "dataexport/exportnaming.h"
#include "util/fileid.h"

#include <QFileInfo>
#include <QSet>

namespace DataExport {

namespace {

bool isNamedAsData(const QString &path)
{
    static const QSet<QString> suffixes{"records", "diagnostics", "currents",    "spectra",     "flags",
                                        "rawdata", "comments",    "windowsetup", "inverter",    "sinv",
                                        "invmap",  "sinp",        "zip",         "exportsetup", "sig",
                                        "log",     "nds",         "conf",        "yaml",        "torn"};
    return suffixes.contains(QFileInfo(path).suffix().toLower());
}

} // namespace

QStringList exportTargets(const GeneralSettings &general, const ExportTable &table,
                          const std::shared_ptr<const Spectrometer::RecordMetadata> &metadata,
                          const Datastore::Records &records)
{
    ExportNaming naming(general, metadata);
    QSet<QString> paths;
    QString last;
    for (const auto &record : records) {
        if (!table.takes(*record))
            continue;
        const QString &path = naming.pathOf(*record);
        if (path != last)
            paths.insert(path);
        last = path;
    }
    QStringList sorted = paths.values();
    sorted.sort();
    return sorted;
}

QString refusalOf(const QStringList &targets, const QStringList &files)
{
    QSet<FileId> ids;
    for (const QString &file : files)
        if (const auto id = fileIdOf(file))
            ids.insert(*id);
    for (const QString &target : targets) {
        const auto id = fileIdOf(target);
        if (id && ids.contains(*id))
            return QStringLiteral("\"%1\" is one of the files to read.").arg(target);
        if (QFileInfo::exists(target) && isNamedAsData(target))
            return QStringLiteral("\"%1\" is named as a file of data or settings.").arg(target);
    }
    return QString();
}

QStringList existingOf(const QStringList &targets)
{
    QStringList existing;
    for (const QString &target : targets) {
        const QFileInfo file(target);
        if (file.exists() || file.isSymLink())
            existing << target;
    }
    return existing;
}

} // namespace DataExport
