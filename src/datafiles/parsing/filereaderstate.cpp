#include "datafiles/parsing/filereaderstate.h"

#include "datafiles/parsing/headerlimits.h"
#include "records/recordflagparser.h"

#include <algorithm>

namespace {

constexpr int mostFlags = 100000;

/// Equal descriptions may differ in their points, and in texts.
bool isSameInAll(const SpectMath::SpectrumInfo &a, const SpectMath::SpectrumInfo &b)
{
    const auto areEqual = [](const auto &x, const auto &y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end());
    };
    return a.inverterName == b.inverterName && a.comment == b.comment && areEqual(a.radii, b.radii) &&
           areEqual(a.mobilities, b.mobilities);
}

} // namespace

FileReaderState::FileReaderState(std::shared_ptr<Datastore> store, RecordTime begin, RecordTime end)
    : metadata(std::make_shared<Spectrometer::RecordMetadata>()), datastore(std::move(store)), beginLimit(begin),
      endLimit(end), records(datastore.get())
{
}

std::unique_ptr<FileReaderState> FileReaderState::makeForecast() const
{
    auto forecast = std::make_unique<FileReaderState>(nullptr, beginLimit, endLimit);
    forecast->metadata->electrometerGroups = metadata->electrometerGroups;
    forecast->metadata->variables = metadata->variables; // which don't change
    forecast->variableNames = variableNames;
    forecast->m_variableIndex = m_variableIndex;
    forecast->electrometerCount = electrometerCount;
    forecast->electrometerCountKnown = electrometerCountKnown;
    forecast->instrumentSettingsTaken = true; // they tell nothing of rows
    forecast->budget = budget;
    return forecast;
}

int FileReaderState::addOpmode(const QString &name)
{
    const auto found = m_opmodeIndex.constFind(name);
    if (found != m_opmodeIndex.constEnd()) {
        order.noteName(FileOrder::Opmodes, *found);
        return *found;
    }
    const int index = opmodeNames.size();
    metadata->opmodes.erase(metadata->opmodes.begin() + index, metadata->opmodes.end()); // what lack of memory left
    metadata->opmodes.append(Opmode(index, name));
    opmodeNames.append(name);
    budget.hold(MemoryBudget::ofName(name.size()));
    m_opmodeIndex.insert(name, index);
    order.noteName(FileOrder::Opmodes, index);
    return index;
}

int FileReaderState::variableOf(const QString &name, const QString &humanname, const QString &unit)
{
    const auto found = m_variableIndex.constFind(name);
    if (found != m_variableIndex.constEnd()) {
        const Spectrometer::SystemVariable &variable = *metadata->variables.at(*found);
        order.noteName(FileOrder::Variables, *found, variable.humanname == humanname && variable.unit == unit);
        return variable.valueIndex;
    }
    const int count = variableNames.size() + 1;
    checkHeaderCount(count, isAffordable(0, electrometerCount, count));
    auto variable = std::make_shared<Spectrometer::SystemVariable>();
    variable->name = name;
    variable->humanname = humanname;
    variable->unit = unit;
    variable->index = variableNames.size();
    variable->valueIndex = variable->index;
    metadata->variables.resize(variable->index); // what lack of memory left
    metadata->variables.append(variable);
    variableNames.append(name);
    budget.hold(2 * MemoryBudget::ofName(name.size() + humanname.size() + unit.size()));
    metadata->variableCount = variableNames.size();
    m_variableIndex.insert(name, variable->index);
    order.noteName(FileOrder::Variables, variable->index);
    return variable->valueIndex;
}

std::shared_ptr<Spectrometer::RecordFlag> FileReaderState::flagOf(const QString &text)
{
    const auto found = recordFlags.constFind(text);
    if (found != recordFlags.constEnd())
        return *found;
    if (recordFlags.size() >= mostFlags)
        return nullptr;
    constexpr qint64 always = 100000;
    const qint64 most = always + budget.bytesRead() / qint64(MemoryBudget::perTreeNode) - m_flagNodes;
    const auto flag = Spectrometer::makeRecordFlag(text, most);
    const qint64 nodes = Spectrometer::nodesOf(flag->properties);
    m_flagNodes += nodes;
    budget.hold(MemoryBudget::ofName(text.size()) + MemoryBudget::perTreeNode * std::size_t(nodes));
    recordFlags.insert(text, flag);
    return flag;
}

SpectMath::SpectrumInfoPointer FileReaderState::shareSpectrum(const std::shared_ptr<SpectMath::SpectrumInfo> &info,
                                                              bool rename, const Log::Logger &logger)
{
    const auto known = spectrumInfos.value(info->hash);
    if (known && *known == *info) {
        if (order.isChecking())
            order.noteName(FileOrder::Spectra, spectrumOrder.indexOf(known), isSameInAll(*known, *info));
        return known;
    }
    const std::size_t bytes = MemoryBudget::ofDescription(info->nativePoints().size());
    checkHeaderCount(spectrumInfos.size(), isAffordable(bytes));
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
    budget.hold(bytes);
    spectrumInfos.insert(info->hash, info);
    order.noteName(FileOrder::Spectra, spectrumOrder.size());
    spectrumOrder.append(info);
    return info;
}

void FileReaderState::addSpectrum(const std::shared_ptr<Record> &record, const SpectMath::SpectrumInfoPointer &info,
                                  std::shared_ptr<SpectMath::Spectrum> spectrum)
{
    spectrum->info = info;
    order.noteSpectrum(*record);
    record->spectra.push_back(std::move(spectrum));
    records.addSpectrum(record, record->spectra.back());
}

bool FileReaderState::takeSpectra(std::size_t bytes)
{
    const bool affordable = isAffordable(bytes);
    if (affordable)
        budget.hold(bytes);
    return affordable;
}

bool FileReaderState::takeSeries(const QVector<SpectMath::SpectrumInfoPointer> &infos)
{
    order.noteSpectra(infos);
    std::size_t bytes = 0;
    for (const auto &info : infos)
        if (!m_withSeries.contains(info.get()))
            bytes += MemoryBudget::ofSeries(info->nativePoints().size());
    if (bytes == 0)
        return true;
    if (!takeSpectra(bytes))
        return false;
    for (const auto &info : infos)
        m_withSeries.insert(info.get());
    return true;
}

void FileReaderState::noteFound(const std::shared_ptr<Record> &record, const QString &mode)
{
    const bool isSame = knownOpmode(mode) == record->opmode;
    order.noteFoundMode(*record, isSame);
    if (isSame)
        addOpmode(mode); // in a read this row may be the first one of its moment
    if (changes)
        changes->push_back({record, record->flags.size()});
}

void FileReaderState::widen(Record &record, NumberGroups groups) const
{
    widenVectors(record, groups, std::size_t(electrometerCount), std::size_t(variableNames.size()));
}

std::size_t FileReaderState::bytesPerRecord(int electrometers, int variables)
{
    return sizeof(double) * (4 * std::size_t(electrometers) + std::size_t(variables));
}

bool FileReaderState::isAffordable(std::size_t newRecords, int electrometers, int variables, std::size_t bytes) const
{
    return budget.allows(bytes, records.recordCount() + newRecords, bytesPerRecord(electrometers, variables));
}

qint64 FileReaderState::mostNodes(int textSize) const
{
    constexpr std::size_t always = std::size_t(8) << 20, most = std::size_t(48) << 20;
    const std::size_t left =
        budget.left(records.recordCount(), bytesPerRecord(electrometerCount, variableNames.size()));
    const std::size_t bytes = std::min(std::max(left, always), most + 7 * std::size_t(textSize));
    return qint64(bytes / MemoryBudget::perTreeNode);
}
