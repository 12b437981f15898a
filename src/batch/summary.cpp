#include "batch/summary.h"

#include "util/timeformat.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace Batch {

namespace {

QString rowTime(RecordTime time, std::int64_t utcOffset)
{
    return timeToString(localTime(time, utcOffset), QStringLiteral("%Y-%m-%d %H:%M:%s")) + utcOffsetToString(utcOffset);
}

bool holdsNumber(const SpectMath::Spectrum &spectrum)
{
    const RealVector &values = spectrum.concentrations;
    return std::any_of(values.begin(), values.end(), [](double value) { return !std::isnan(value); });
}

QString typeName(int type)
{
    switch (type) {
    case Spectrometer::RecordFlag::Warning:
        return QStringLiteral("warning");
    case Spectrometer::RecordFlag::Failure:
        return QStringLiteral("failure");
    default:
        return QStringLiteral("note");
    }
}

/// Where the data end: the latest end of all records, a record without an end counting with its begin.
QString endOf(const Datastore::Records &records)
{
    RecordTime last = earliestRecordTime;
    const Record *latest = nullptr;
    for (const auto &record : records) {
        const RecordTime end = effectiveEnd(*record);
        if (!latest || last < end) {
            last = end;
            latest = record.get();
        }
    }
    if (!latest)
        return QString();
    return rowTime(last, isMissing(latest->endTime) ? latest->beginUtcOffset : latest->endUtcOffset);
}

QList<QPair<QString, std::int64_t>> countModes(const Datastore::Records &records, const QVector<Opmode> &opmodes)
{
    QList<QPair<QString, std::int64_t>> modes;
    for (const Opmode &opmode : opmodes)
        modes.append({opmode.name, 0});
    std::int64_t unknown = 0;
    for (const auto &record : records)
        ++(record->opmode >= 0 && record->opmode < modes.size() ? modes[record->opmode].second : unknown);
    if (unknown == 0)
        return modes;
    for (auto &mode : modes) {
        if (mode.first.isEmpty()) { // a mode without a name can't be told from none
            mode.second += unknown;
            return modes;
        }
    }
    modes.append({QString(), unknown});
    return modes;
}

QList<Summary::Flag> countFlags(const Datastore::Records &records)
{
    QList<Summary::Flag> flags;
    QHash<QString, int> places; // by text: messages may be alike
    for (const auto &record : records) {
        for (const auto &flag : record->flags) {
            const auto place = places.constFind(flag->text);
            if (place != places.constEnd()) {
                ++flags[*place].records;
                continue;
            }
            places.insert(flag->text, flags.size());
            flags.append({typeName(flag->type), flag->message, 1});
        }
    }
    return flags;
}

Summary::Spectrum summaryOf(const SpectMath::SpectrumInfo &info, const Datastore &store)
{
    Summary::Spectrum spectrum;
    spectrum.name = info.name;
    spectrum.inverter = info.inverterName;
    spectrum.id = info.hash;
    spectrum.points = int(info.nativePoints().size());
    spectrum.unit = info.concentrationUnit.toString();
    if (const auto series = store.series(&info)) {
        spectrum.records = std::int64_t(series->size());
        spectrum.empty = std::count_if(series->begin(), series->end(),
                                       [](const SpectrumRecord &entry) { return !holdsNumber(*entry.spectrum); });
    }
    return spectrum;
}

} // namespace

Summary makeSummary(const FolderRead &read)
{
    const FileReader &reader = *read.reader;
    const Datastore &store = *reader.datastore();
    const Spectrometer::RecordMetadata &metadata = *reader.metadata();

    Summary summary;
    summary.files = read.files;
    summary.rows = reader.statistics().rows;
    summary.ignoredRows = reader.statistics().ignoredRows;
    summary.bytes = reader.statistics().bytes;
    summary.seconds = read.seconds;
    summary.records = store.size();
    if (!store.isEmpty())
        summary.begin = rowTime(store.at(0)->beginTime, store.at(0)->beginUtcOffset);
    summary.end = endOf(store.records());
    summary.modes = countModes(store.records(), metadata.opmodes);
    summary.electrometers = metadata.totalElectrometers;
    for (const auto &variable : metadata.variables)
        summary.variables.append(variable->name);
    for (const auto &info : reader.spectrumInfos())
        summary.spectra.append(summaryOf(*info, store));
    summary.flags = countFlags(store.records());
    return summary;
}

} // namespace Batch
