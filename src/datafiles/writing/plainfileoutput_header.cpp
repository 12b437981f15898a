#include "datafiles/writing/plainfileoutput_header.h"

#include "llama/qyaml.h"
#include "log/logger.h"
#include "util/buildinfo.h"
#include "util/textescape.h"

#include <QStringList>
#include <QSysInfo>

#include <algorithm>

namespace Spectrometer {
namespace FileHeader {

namespace {

void appendNumbered(QStringList &columns, const QString &prefix, int count)
{
    for (int i = 0; i < count; ++i)
        columns << prefix + QString::number(i);
}

void appendVariables(QStringList &columns, const RecordMetadata &metadata)
{
    for (const auto &variable : metadata.variables)
        columns << variable->name;
}

QStringList headColumns()
{
    return {QStringLiteral("begin_time"), QStringLiteral("end_time"), QStringLiteral("opmode")};
}

void addInstrumentKeys(QVariantMap &map, const RecordMetadata &metadata)
{
    map[QStringLiteral("total electrometers")] = metadata.totalElectrometers;

    QVariantMap groups;
    for (auto it = metadata.electrometerGroups.begin(); it != metadata.electrometerGroups.end(); ++it)
        groups[it.key()] = QVariantList{it->first, it->end - 1};
    map[QStringLiteral("electrometer groups")] = groups;

    QVariantList names;
    for (int i = 0; i < metadata.totalElectrometers; ++i)
        names << metadata.electrometerNames.value(i); // an old file may tell a count and no names
    map[QStringLiteral("electrometer names")] = names;

    QVariantList parameters;
    for (const auto &variable : metadata.variables)
        parameters << QVariantMap{{QStringLiteral("name"), variable->name},
                                  {QStringLiteral("humanname"), variable->humanname},
                                  {QStringLiteral("unit"), variable->unit}};
    map[QStringLiteral("parameters")] = parameters;
}

QVariantMap spectrumEntry(const SpectMath::SpectrumInfo &info)
{
    const bool onMobility = info.scale == SpectMath::DistributionScale::mobility;
    QVariantList points;
    for (double point : info.nativePoints())
        points << point;
    return {{QStringLiteral("name"), info.name},
            {QStringLiteral("inverter_name"), info.inverterName},
            {QStringLiteral("comment"), info.comment},
            {QStringLiteral("hash"), info.hash},
            {QStringLiteral("scale"), onMobility ? QStringLiteral("mobility") : QStringLiteral("radius")},
            {QStringLiteral("yunit"), info.concentrationUnit.toString()},
            {QStringLiteral("xunit"), (onMobility ? info.mobilityUnit : info.sizeUnit).toString()},
            {QStringLiteral("xpoints"), points}};
}

QStringList spectrumColumns(const SpectMath::SpectrumInfo &info, bool inversionVars)
{
    QString name = info.name;
    name.replace(QLatin1Char('\t'), QLatin1Char('_'));
    QStringList columns;
    for (const QString &kind : {QStringLiteral("nd_avg(%1, %2)"), QStringLiteral("nd_std(%1, %2)")})
        for (double point : info.nativePoints())
            columns << kind.arg(name, QStringLiteral("%1").arg(point));
    if (inversionVars)
        for (const QString &kind :
             {QStringLiteral("current_rms_error(%1)"), QStringLiteral("current_mean_abs_error(%1)"),
              QStringLiteral("current_total_error(%1)")})
            columns << kind.arg(info.name);
    return columns;
}

/// Whole numbers beyond 32 bits would be read back as 0 where they stand as digits: as texts they keep their value, and
/// read as numbers wherever one is asked for.
QVariant readableNumbers(const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::QVariantMap: {
        QVariantMap map = value.toMap();
        for (QVariant &entry : map)
            entry = readableNumbers(entry);
        return map;
    }
    case QMetaType::QVariantList: {
        QVariantList list = value.toList();
        for (QVariant &item : list)
            item = readableNumbers(item);
        return list;
    }
    case QMetaType::Double:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        const QString text = value.toString();
        const bool isWhole =
            std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit() || c == QLatin1Char('-'); });
        bool fits = false;
        text.toInt(&fits);
        return isWhole && !fits ? QVariant(text) : value;
    }
    default:
        return value;
    }
}

Lines headerLines(const QByteArray &magicLine, const QVariantMap &map, const QStringList &columns)
{
    QByteArray yaml;
    try {
        yaml = Llama::yamlDump(readableNumbers(map));
    } catch (const Llama::YamlError &) {
        Log::Logger(QStringLiteral("filewriter"))
            .log(Log::Warning, QStringLiteral("Failed to create output file headers."));
        return {QByteArrayLiteral("# ** Software error: failed to create headers **")};
    }
    Lines lines{magicLine};
    for (const QByteArray &line : yaml.split('\n'))
        lines << "# " + line;
    lines << columns.join(QLatin1Char('\t')).toUtf8();
    return lines;
}

Lines instrumentHeader(const QByteArray &magicLine, const QString &fileType, QVariantMap map,
                       const RecordMetadata &metadata, const QStringList &columns)
{
    map[QStringLiteral("file type")] = fileType;
    addInstrumentKeys(map, metadata);
    return headerLines(magicLine, map, columns);
}

} // namespace

QString softwareText()
{
    return QStringLiteral("Quilvane %1 revision %2 date %3 architecture %4")
        .arg(BuildInfo::version(), BuildInfo::revision(), BuildInfo::buildTime(), QSysInfo::buildAbi());
}

QVariantMap commonKeys(const RecordMetadata &metadata)
{
    QVariantList opmodes;
    for (const Opmode &opmode : metadata.opmodes)
        opmodes << opmode.name;
    return {{QStringLiteral("instrument configuration"), metadata.instrumentSettings},
            {QStringLiteral("software"), softwareText()},
            {QStringLiteral("opmodes"), opmodes}};
}

Lines recordsHeader(const QVariantMap &common, const RecordMetadata &metadata)
{
    QStringList columns = headColumns();
    for (const char *prefix : {"cur_", "curvar_", "rawcur_", "volt_"})
        appendNumbered(columns, QLatin1String(prefix), metadata.totalElectrometers);
    appendVariables(columns, metadata);
    columns << QStringLiteral("flags");
    return instrumentHeader("# Quilvane records", QStringLiteral("records"), common, metadata, columns);
}

Lines diagnosticsHeader(const QVariantMap &common, const RecordMetadata &metadata)
{
    QStringList columns = headColumns();
    appendNumbered(columns, QStringLiteral("volt_"), metadata.totalElectrometers);
    appendVariables(columns, metadata);
    return instrumentHeader("# Quilvane diagnostics", QStringLiteral("diagnostics"), common, metadata, columns);
}

Lines currentsHeader(const QVariantMap &common, const RecordMetadata &metadata)
{
    QStringList columns = headColumns();
    for (const char *prefix : {"cur_", "curvar_", "rawcur_"})
        appendNumbered(columns, QLatin1String(prefix), metadata.totalElectrometers);
    return instrumentHeader("# Quilvane currents", QStringLiteral("currents"), common, metadata, columns);
}

Lines rawHeader(const QVariantMap &common, const RecordMetadata &metadata)
{
    QStringList columns{QStringLiteral("time"), QStringLiteral("opmode"), QStringLiteral("computertime")};
    appendNumbered(columns, QStringLiteral("volt_"), metadata.totalElectrometers);
    columns << QStringLiteral("validity_bitmap");
    appendVariables(columns, metadata);
    return instrumentHeader("# Quilvane raw data", QStringLiteral("raw"), common, metadata, columns);
}

Lines spectraHeader(const QVariantMap &common, const QString &opmode, const SpectrumInfos &spectra, bool inversionVars)
{
    QVariantMap map = common;
    map[QStringLiteral("file type")] = QStringLiteral("spectra");
    map[QStringLiteral("common opmode")] = opmode;
    QStringList columns = headColumns();
    QVariantList entries;
    for (const auto &info : spectra) {
        entries << spectrumEntry(*info);
        columns << spectrumColumns(*info, inversionVars);
    }
    map[QStringLiteral("spectra")] = entries;
    if (inversionVars)
        map[QStringLiteral("inversion_vars")] =
            QStringList{QStringLiteral("current_rms_error"), QStringLiteral("current_mean_abs_error"),
                        QStringLiteral("current_total_error")};
    return headerLines("# Quilvane spectra", map, columns);
}

Lines logHeader()
{
    const QString version =
        fillMarkers(QStringLiteral("# version: %1, revision: %2, buildTime: %3, architecture: %4 os: %5 kernel: %6 %7"),
                    {BuildInfo::version(), BuildInfo::revision(), BuildInfo::buildTime(), QSysInfo::buildAbi(),
                     QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion()});
    return {QByteArrayLiteral("# Quilvane program log"), version.toUtf8()};
}

} // namespace FileHeader
} // namespace Spectrometer
