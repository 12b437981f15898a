#include "datafiles/parsing/filereaderstate.h"

#include "datafiles/parsing/headerlimits.h"
#include "records/recordflagparser.h"

namespace {

constexpr int mostFlags = 100000;

void growWithNaN(RealVector &vector, int size)
{
    if (vector.size() < std::size_t(size))
        vector.data().resize(std::size_t(size), noValue);
}

} // namespace

FileReaderState::FileReaderState(std::shared_ptr<Datastore> store, RecordTime begin, RecordTime end)
    : metadata(std::make_shared<Spectrometer::RecordMetadata>()), datastore(std::move(store)), beginLimit(begin),
      endLimit(end), records(datastore.get())
{
}

int FileReaderState::addOpmode(const QString &name)
{
    const auto found = m_opmodeIndex.constFind(name);
    if (found != m_opmodeIndex.constEnd())
        return *found;
    const int index = opmodeNames.size();
    opmodeNames.append(name);
    metadata->opmodes.append(Opmode(index, name));
    m_opmodeIndex.insert(name, index);
    return index;
}

int FileReaderState::variableOf(const QString &name, const QString &humanname, const QString &unit)
{
    const auto found = m_variableIndex.constFind(name);
    if (found != m_variableIndex.constEnd())
        return metadata->variables.at(*found)->valueIndex;
    const int count = variableNames.size() + 1;
    checkHeaderCount(count, isAffordable(0, electrometerCount, count));
    auto variable = std::make_shared<Spectrometer::SystemVariable>();
    variable->name = name;
    variable->humanname = humanname;
    variable->unit = unit;
    variable->index = variableNames.size();
    variable->valueIndex = variable->index;
    m_variableIndex.insert(name, variable->index);
    variableNames.append(name);
    metadata->variables.append(variable);
    metadata->variableCount += 1;
    return variable->valueIndex;
}

std::shared_ptr<Spectrometer::RecordFlag> FileReaderState::flagOf(const QString &text)
{
    const auto found = recordFlags.constFind(text);
    if (found != recordFlags.constEnd())
        return *found;
    if (recordFlags.size() >= mostFlags)
        return nullptr;
    constexpr qint64 always = 100000, bytesPerNode = 110;
    const auto flag = Spectrometer::makeRecordFlag(text, always + bytesRead / bytesPerNode - m_flagNodes);
    m_flagNodes += Spectrometer::nodesOf(flag->properties);
    recordFlags.insert(text, flag);
    return flag;
}

SpectMath::SpectrumInfoPointer FileReaderState::shareSpectrum(const std::shared_ptr<SpectMath::SpectrumInfo> &info,
                                                              bool rename, const Log::Logger &logger)
{
    const auto known = spectrumInfos.value(info->hash);
    if (known && *known == *info)
        return known;
    if (known) {
        if (!rename)
            return nullptr;
        logger.log(Log::Warning, QStringLiteral("Found a different spectrum with a known hash."));
        const QString hash = info->hash;
        int &number = m_renamed[hash];
        do
            info->hash = QStringLiteral("%1-%2").arg(hash, QString::number(++number));
        while (spectrumInfos.contains(info->hash));
    }
    spectrumInfos.insert(info->hash, info);
    spectrumOrder.append(info);
    return info;
}

std::shared_ptr<Record> FileReaderState::makeRecord(const RowTimes &times) const
{
    auto record = ::makeRecord();
    record->dpVariantId = 0;
    record->beginTime = times.begin;
    record->endTime = times.end;
    record->beginUtcOffset = times.beginUtcOffset;
    record->endUtcOffset = times.endUtcOffset;
    record->midTime = Spectrometer::middleOf(times.begin, times.end);
    return record;
}

std::shared_ptr<SpectMath::Spectrum> FileReaderState::makeSpectrum(const SpectMath::SpectrumInfoPointer &info) const
{
    const std::size_t points = info->nativePoints().size();
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->status = 0;
    spectrum->info = info;
    spectrum->concentrations.resize(points, false);
    spectrum->covariances.resize(points, points, 0, 0, false);
    return spectrum;
}

std::size_t FileReaderState::bytesOf(const SpectMath::SpectrumInfo &info)
{
    return 256 + 2 * sizeof(double) * info.nativePoints().size();
}

bool FileReaderState::canTakeSpectra(std::size_t bytes) const
{
    return isAffordable(0, electrometerCount, variableNames.size(), bytes);
}

void FileReaderState::widen(Record &record) const
{
    growWithNaN(record.voltages, electrometerCount);
    growWithNaN(record.variables, variableNames.size());
    growWithNaN(record.currents, electrometerCount);
    growWithNaN(record.currentVariances, electrometerCount);
    growWithNaN(record.rawCurrents, electrometerCount);
}

bool FileReaderState::isAffordable(std::size_t newRecords, int electrometers, int variables,
                                   std::size_t spectrumBytes) const
{
    constexpr std::size_t always = std::size_t(32) << 20, perRecord = 512, perByte = 8;
    const std::size_t count = records.recordCount() + newRecords;
    const std::size_t width = sizeof(double) * (4 * std::size_t(electrometers) + std::size_t(variables));
    return count * width + m_spectrumBytes + spectrumBytes <=
           always + count * perRecord + std::size_t(bytesRead) * perByte;
}
