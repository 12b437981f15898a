#include "datafiles/reading/appendedrowplacer.h"

#include "datafiles/reading/blockreader.h"
#include "datafiles/reading/filereader.h"
#include "log/logger.h"

#include <QFileInfo>

#include <algorithm>

namespace {

constexpr std::size_t rowsAtATime = 16;

bool isSameDescription(const Spectrometer::RecordMetadata &a, const Spectrometer::RecordMetadata &b)
{
    return a.instrumentSettings == b.instrumentSettings && a.electrometerNames == b.electrometerNames &&
           a.totalElectrometers == b.totalElectrometers;
}

} // namespace

AppendedRowPlacer::AppendedRowPlacer(std::shared_ptr<FileReader> reader)
    : m_reader(std::move(reader)), m_state(m_reader->state()), m_metadata(*m_state.metadata)
{
    m_state.changes = &m_changes;
    m_state.order.startChecking();
}

AppendedRowPlacer::~AppendedRowPlacer()
{
    m_state.changes = nullptr;
}

bool AppendedRowPlacer::isContradicted() const
{
    return m_state.order.isContradicted();
}

void AppendedRowPlacer::take(AppendedRows rows)
{
    m_rows = std::move(rows);
    m_next = 0;
}

/// The reader of the file that the rows are of, with its block in force.
BlockReader &AppendedRowPlacer::blocksOf(const AppendedRows &rows)
{
    std::unique_ptr<BlockReader> &blocks = m_blocks[rows.path];
    if (!blocks) {
        blocks = std::make_unique<BlockReader>(QFileInfo(rows.path).fileName(), &m_state,
                                               Log::Logger(QStringLiteral("filereader")), &m_reader->statistics());
        m_state.order.pauseChecking(true);
        const int names = m_state.spectrumOrder.size() + m_state.opmodeNames.size() + m_state.variableNames.size();
        blocks->resume(rows.context, rows.rowsBefore);
        m_state.order.pauseChecking(false);
        if (m_state.spectrumOrder.size() + m_state.opmodeNames.size() + m_state.variableNames.size() != names)
            m_state.order.contradict(); // a header that tells something new each time
    }
    return *blocks;
}

bool AppendedRowPlacer::placeSome()
{
    if (isContradicted() || !m_rows.chunk)
        return false;
    ParsedRows &rows = m_rows.chunk->rows;
    const std::size_t count = std::min(rowsAtATime, rows.rows.size() - m_next);
    m_state.order.enter(m_rows.path);
    BlockReader &blocks = blocksOf(m_rows);
    m_changes.clear();
    blocks.placeRows(rows, m_next, count);
    tell();
    if (!isSameDescription(m_metadata, *m_state.metadata))
        m_state.order.contradict();
    m_next += count;
    m_rowsPlaced += int(count);
    const bool isLeft = m_next < rows.rows.size() && !isContradicted();
    if (!isLeft)
        m_rows = AppendedRows();
    return isLeft;
}

void AppendedRowPlacer::tell()
{
    const RecordCollector::News news = m_state.records.take();
    for (const auto &record : news.records)
        tellNew(record);
    const auto isNew = [&news](const std::shared_ptr<Record> &record) {
        const auto begin = [](const std::shared_ptr<Record> &a, const std::shared_ptr<Record> &b) {
            return a->beginTime < b->beginTime;
        };
        return std::binary_search(news.records.begin(), news.records.end(), record, begin);
    };
    std::vector<SpectrumRecord> spectra; // of records that were there
    for (const SpectrumRecord &entry : news.spectra)
        if (!isNew(entry.record))
            spectra.push_back(entry);
    m_changes.erase(std::remove_if(m_changes.begin(), m_changes.end(),
                                   [&isNew](const auto &change) { return isNew(change.record); }),
                    m_changes.end());
    tellChanged(spectra);
}

void AppendedRowPlacer::tellNew(const std::shared_ptr<Record> &record)
{
    m_state.widen(*record, NumberGroups::all());
    const auto spectra = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*spectra) = *record;
    spectra->spectra.swap(record->spectra);
    m_state.datastore->takeIn(record);
    addSpectra(spectra);
}

/// Each record once, however many rows it got.
void AppendedRowPlacer::tellChanged(const std::vector<SpectrumRecord> &spectra)
{
    std::vector<std::pair<std::shared_ptr<Record>, std::size_t>> counts;
    for (const SpectrumRecord &entry : spectra) {
        const auto known = std::find_if(counts.begin(), counts.end(),
                                        [&entry](const auto &count) { return count.first == entry.record; });
        if (known != counts.end())
            ++known->second;
        else
            counts.emplace_back(entry.record, 1);
    }
    const auto byRecord = [](const auto &a, const auto &b) { return a.record < b.record; };
    std::stable_sort(m_changes.begin(), m_changes.end(), byRecord);
    const auto end = std::unique(m_changes.begin(), m_changes.end(),
                                 [](const auto &a, const auto &b) { return a.record == b.record; });
    for (auto change = m_changes.begin(); change != end; ++change) {
        m_state.datastore->upsertFullRecord(change->record);
        tellFlags(*change->record, change->flagsBefore);
    }
    for (const auto &count : counts)
        tellSpectra(count.first, count.second);
}

/// The last ones of the record's spectra are new.
void AppendedRowPlacer::tellSpectra(const std::shared_ptr<Record> &record, std::size_t count)
{
    const auto added = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*added) = *record;
    const auto first = record->spectra.end() - std::ptrdiff_t(count);
    added->spectra.assign(first, record->spectra.end());
    record->spectra.erase(first, record->spectra.end());
    addSpectra(added);
}

void AppendedRowPlacer::addSpectra(const std::shared_ptr<SpectMath::SpectrumRecord> &added)
{
    auto &spectra = added->spectra;
    const auto isUnwanted = [this](const auto &spectrum) { return m_isWanted && !m_isWanted(spectrum->info.get()); };
    spectra.erase(std::remove_if(spectra.begin(), spectra.end(), isUnwanted), spectra.end());
    if (!spectra.empty())
        m_state.datastore->addSpectra(added);
}

void AppendedRowPlacer::tellFlags(const Record &record, std::size_t first)
{
    if (!m_tellFlags || first >= record.flags.size())
        return;
    const auto flagged = std::make_shared<Spectrometer::FullRecord>();
    static_cast<Spectrometer::RecordHead &>(*flagged) = record;
    flagged->flags.assign(record.flags.begin() + std::ptrdiff_t(first), record.flags.end());
    m_tellFlags(flagged);
}
