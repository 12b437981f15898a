#include "store/spectrumindex.h"

#include "store/bisect.h"
#include "store/seriesmerge.h"

#include <algorithm>

namespace {

void updateGaps(SpectrumIndex::Series &series, std::size_t place)
{
    updateGaps(place > 0 ? &series[place - 1] : nullptr, series[place],
               place + 1 < series.size() ? &series[place + 1] : nullptr);
}

bool beginOneAfterTheOther(const std::vector<SpectrumRecord> &entries)
{
    return std::adjacent_find(entries.begin(), entries.end(), [](const SpectrumRecord &x, const SpectrumRecord &y) {
               return x.record->beginTime >= y.record->beginTime;
           }) == entries.end();
}

} // namespace

const SpanIndex &SpectrumIndex::spans(Key key) const
{
    static const SpanIndex none;
    const auto found = m_series.constFind(key);
    if (found == m_series.constEnd())
        return none;
    const Series &series = **found;
    SpanIndex &spans = m_knowledge.at(key).spans;
    for (std::size_t i = spans.size(); i < series.size(); ++i)
        spans.append(series[i].record->beginTime, series[i].record->endTime);
    return spans;
}

void SpectrumIndex::updateSpans() const
{
    for (auto series = m_series.begin(); series != m_series.end(); ++series)
        spans(series.key());
}

const SpectMath::DecadeHistogram &SpectrumIndex::histogram(Key key) const
{
    static const SpectMath::DecadeHistogram none;
    const auto found = m_knowledge.find(key);
    return found == m_knowledge.end() ? none : found->second.summary.histogram();
}

const double *SpectrumIndex::totalDecades(Key key) const
{
    const auto found = m_knowledge.find(key);
    return found == m_knowledge.end() ? nullptr : found->second.summary.totalDecades();
}

std::size_t SpectrumIndex::lostEntries(Key key) const
{
    const auto found = m_lostEntries.find(key);
    return found == m_lostEntries.end() ? 0 : found->second;
}

std::size_t SpectrumIndex::lowerBoundOf(const Series &series, RecordTime time)
{
    return bisect(series.size(), [&series, time](std::size_t i) { return series[i].record->beginTime < time; });
}

/// The series of a description, made if there is none.
SpectrumIndex::Series &SpectrumIndex::seriesOf(const SpectMath::SpectrumInfoPointer &info)
{
    const auto found = m_series.constFind(info.get());
    if (found != m_series.constEnd())
        return **found;
    const auto series = std::make_shared<Series>();
    m_knowledge.try_emplace(info.get(), info);
    m_series.insert(info.get(), series);
    return *series;
}

void SpectrumIndex::enter(const std::shared_ptr<Record> &record, const std::shared_ptr<SpectMath::Spectrum> &spectrum)
{
    Series &series = seriesOf(spectrum->info);
    Knowledge &knowledge = m_knowledge.at(spectrum->info.get());
    const std::size_t place = lowerBoundOf(series, record->beginTime);
    if (place < series.size() && series[place].record == record) {
        knowledge.summary.replace(place, *series[place].spectrum, *spectrum);
        series[place].spectrum = spectrum;
    } else {
        knowledge.summary.reserve(series.size() + 1); // so that nothing fails once the entry is there
        series.insert(series.begin() + std::ptrdiff_t(place), {record, spectrum});
        knowledge.summary.insert(place, *spectrum);
        knowledge.spans.insertOrForget(place, record->beginTime, record->endTime);
    }
    updateGaps(series, place);
}

void SpectrumIndex::enter(std::vector<SpectrumRecord> &&entries)
{
    std::map<Key, std::vector<SpectrumRecord>> byKey;
    for (SpectrumRecord &entry : entries)
        byKey[entry.spectrum->info.get()].push_back(std::move(entry));
    entries.clear();
    for (const auto &[key, ofSeries] : byKey)
        enterOfOneSeries(ofSeries);
}

void SpectrumIndex::enterOfOneSeries(const std::vector<SpectrumRecord> &entries)
{
    const SpectMath::SpectrumInfoPointer &info = entries.front().spectrum->info;
    Series &series = seriesOf(info);
    Knowledge &knowledge = m_knowledge.at(info.get());
    const std::size_t place = lowerBoundOf(series, entries.front().record->beginTime);
    if (entries.size() < 16 || (place == series.size() && beginOneAfterTheOther(entries))) {
        for (const SpectrumRecord &entry : entries)
            enter(entry.record, entry.spectrum);
        return;
    }
    knowledge.spans.truncate(place);
    mergeSpectra(series, knowledge.summary, place, entries);
}

void SpectrumIndex::dropUpTo(RecordTime time)
{
    for (auto entry = m_series.begin(); entry != m_series.end(); ++entry) {
        Series &series = **entry;
        Knowledge &knowledge = m_knowledge.at(entry.key());
        std::size_t lost = 0;
        for (; !series.empty() && series.front().record->beginTime <= time; ++lost) {
            knowledge.summary.removeFirst(*series.front().spectrum);
            series.pop_front();
        }
        if (lost == 0)
            continue;
        knowledge.spans.removeFirst(lost);
        m_lostEntries[entry.key()] += lost;
    }
}

std::shared_ptr<SpectrumIndex::Series> SpectrumIndex::remove(Key key)
{
    const std::shared_ptr<Series> series = m_series.take(key);
    m_knowledge.erase(key);
    if (series)
        m_lostEntries[key] += series->size();
    return series;
}

void SpectrumIndex::clear()
{
    m_series.clear();
    m_knowledge.clear();
    m_lostEntries.clear();
}
