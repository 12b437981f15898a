#include "store/datastore.h"

#include "store/seriesmerge.h"

#include <QDebug>

#include <algorithm>

namespace {

/// Beyond this distance from the end an insertion forgets the spans behind it, to be made anew when they are asked for.
constexpr std::size_t farFromEnd = 4096;

void insertSpan(SpanIndex &spans, std::size_t index, const Record &record)
{
    if (index > spans.size())
        return; // lies in the part that is made anew
    if (spans.size() - index > farFromEnd)
        spans.truncate(index);
    else
        spans.insert(index, record.beginTime, record.endTime);
}

void insertMarks(ValueQueue<RecordMarks> &marks, std::size_t index, const Record &record)
{
    if (index > marks.size())
        return; // likewise
    if (marks.size() - index > farFromEnd)
        marks.truncate(index);
    else
        marks.insert(index, RecordMarks::of(record));
}

void updateGaps(Datastore::Series &series, std::size_t place)
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

void warnOfMissingTimes(const Record &record)
{
    if (isMissing(record.beginTime) || isMissing(record.endTime))
        qWarning("Encountered record with no begin or end time");
}

} // namespace

Datastore::Datastore(QObject *parent) : QObject(parent) {}

Datastore::~Datastore() = default;

void Datastore::setLimitRecords(bool on)
{
    m_limitRecords = on;
}

void Datastore::setMaxRecords(int count)
{
    m_maxRecords = count;
}

const std::shared_ptr<Record> &Datastore::at(int index) const
{
    if (index < 0 || index >= size())
        qFatal("Possible software bug: record %d of %d was asked for", index, size());
    return m_records[std::size_t(index)];
}

std::shared_ptr<const Datastore::Series> Datastore::series(SeriesKey key) const
{
    return m_spectrumSeries.value(key);
}

const SpanIndex &Datastore::recordSpans() const
{
    for (std::size_t i = m_recordSpans.size(); i < m_records.size(); ++i)
        m_recordSpans.append(m_records[i]->beginTime, m_records[i]->endTime);
    return m_recordSpans;
}

const SpanIndex &Datastore::seriesSpans(SeriesKey key) const
{
    static const SpanIndex none;
    const auto found = m_spectrumSeries.constFind(key);
    if (found == m_spectrumSeries.constEnd())
        return none;
    const Series &series = **found;
    SpanIndex &spans = m_seriesSpans[key];
    for (std::size_t i = spans.size(); i < series.size(); ++i)
        spans.append(series[i].record->beginTime, series[i].record->endTime);
    return spans;
}

const SpectMath::DecadeHistogram &Datastore::histogram(SeriesKey key) const
{
    static const SpectMath::DecadeHistogram none;
    const auto found = m_summaries.find(key);
    return found == m_summaries.end() ? none : found->second.histogram();
}

const double *Datastore::totalDecades(SeriesKey key) const
{
    const auto found = m_summaries.find(key);
    return found == m_summaries.end() ? nullptr : found->second.totalDecades();
}

SeriesSummary &Datastore::summaryOf(const SpectMath::SpectrumInfoPointer &info)
{
    return m_summaries.try_emplace(info.get(), info).first->second;
}

const RecordMarks *Datastore::recordMarks() const
{
    for (std::size_t i = m_recordMarks.size(); i < m_records.size(); ++i)
        m_recordMarks.insert(i, RecordMarks::of(*m_records[i]));
    return m_recordMarks.data();
}

void Datastore::updateMarks(int index)
{
    if (std::size_t(index) < m_recordMarks.size())
        m_recordMarks.set(std::size_t(index), RecordMarks::of(*at(index)));
}

void Datastore::updateIndexes() const
{
    recordSpans();
    recordMarks();
    for (const SeriesKey key : m_spectrumSeries.keys())
        seriesSpans(key);
}

std::size_t Datastore::lostEntries(SeriesKey key) const
{
    const auto found = m_lostEntries.find(key);
    return found == m_lostEntries.end() ? 0 : found->second;
}

Datastore::iterator Datastore::insertRecord(iterator position, const std::shared_ptr<Record> &record)
{
    return m_records.begin() + insertAt(int(position - m_records.begin()), record);
}

int Datastore::insertAt(int index, const std::shared_ptr<Record> &record)
{
    warnOfMissingTimes(*record);
    if (m_limitRecords && size() >= m_maxRecords) {
        while (size() > 0 && size() > m_maxRecords - 1) {
            dropOldest();
            index = std::max(0, index - 1);
        }
        index = std::min(index, size());
    }
    insertSpan(m_recordSpans, std::size_t(index), *record);
    insertMarks(m_recordMarks, std::size_t(index), *record);
    m_records.insert(m_records.begin() + index, record);
    m_lastFound = index;
    return index;
}

void Datastore::dropOldest()
{
    const std::shared_ptr<Record> dropped = m_records.front();
    m_records.pop_front();
    m_recordSpans.removeFirst(1);
    m_recordMarks.removeFirst(std::min<std::size_t>(1, m_recordMarks.size()));
    ++m_lostRecords;
    for (auto entry = m_spectrumSeries.begin(); entry != m_spectrumSeries.end(); ++entry) {
        Series &series = **entry;
        std::size_t lost = 0;
        // Another record of the same beginTime loses its entry too.
        for (; !series.empty() && series.front().record->beginTime <= dropped->beginTime; ++lost) {
            m_summaries.at(entry.key()).removeFirst(*series.front().spectrum);
            series.pop_front();
        }
        if (lost == 0)
            continue;
        m_seriesSpans[entry.key()].removeFirst(lost);
        m_lostEntries[entry.key()] += lost;
    }
    Q_EMIT removed(0, dropped);
}

void Datastore::mergeRecords(std::vector<std::shared_ptr<Record>> &&records)
{
    if (m_limitRecords && m_records.size() + records.size() > std::size_t(std::max(0, m_maxRecords))) {
        for (auto record = records.rbegin(); record != records.rend(); ++record)
            insertAt(lowerBoundIndex((*record)->beginTime), *record);
        records.clear();
        return;
    }
    if (records.empty())
        return;
    for (const auto &record : records)
        warnOfMissingTimes(*record);
    const auto first = std::size_t(lowerBoundIndex(records.front()->beginTime));
    m_recordSpans.truncate(first);
    m_recordMarks.truncate(std::min(first, m_recordMarks.size()));
    std::size_t stored = m_records.size();
    m_records.resize(m_records.size() + records.size());
    // From the back, so that only what lies behind the first newcomer moves. Of equal times the newcomer goes before.
    for (std::size_t place = m_records.size(); !records.empty(); --place) {
        if (stored > 0 && m_records[stored - 1]->beginTime >= records.back()->beginTime) {
            m_records[place - 1] = std::move(m_records[--stored]);
        } else {
            m_records[place - 1] = std::move(records.back());
            records.pop_back();
        }
    }
}

void Datastore::enterSpectrum(const std::shared_ptr<Record> &record,
                              const std::shared_ptr<SpectMath::Spectrum> &spectrum)
{
    const SeriesKey key = spectrum->info.get();
    std::shared_ptr<Series> &series = m_spectrumSeries[key];
    if (!series)
        series = std::make_shared<Series>();
    SeriesSummary &summary = summaryOf(spectrum->info);
    const std::size_t place = lowerBoundOf(*series, record->beginTime);
    if (place < series->size() && (*series)[place].record == record) {
        summary.replace(place, *(*series)[place].spectrum, *spectrum);
        (*series)[place].spectrum = spectrum;
    } else {
        summary.insert(place, *spectrum);
        series->insert(series->begin() + std::ptrdiff_t(place), {record, spectrum});
        insertSpan(m_seriesSpans[key], place, *record);
    }
    updateGaps(*series, place);
}

void Datastore::enterSpectra(std::vector<SpectrumRecord> &&entries)
{
    std::map<SeriesKey, std::vector<SpectrumRecord>> byKey;
    for (SpectrumRecord &entry : entries)
        byKey[entry.spectrum->info.get()].push_back(std::move(entry));
    entries.clear();
    for (const auto &[key, ofSeries] : byKey)
        mergeIntoSeries(key, ofSeries);
}

void Datastore::mergeIntoSeries(SeriesKey key, const std::vector<SpectrumRecord> &entries)
{
    std::shared_ptr<Series> &series = m_spectrumSeries[key];
    if (!series)
        series = std::make_shared<Series>();
    const std::size_t place = lowerBoundOf(*series, entries.front().record->beginTime);
    if (entries.size() < 16 || (place == series->size() && beginOneAfterTheOther(entries))) {
        for (const SpectrumRecord &entry : entries)
            enterSpectrum(entry.record, entry.spectrum);
        return;
    }
    m_seriesSpans[key].truncate(place);
    mergeSpectra(*series, summaryOf(entries.front().spectrum->info), place, entries);
}

std::shared_ptr<Datastore::Series> Datastore::removeSpectrum(SeriesKey key)
{
    std::shared_ptr<Series> series = m_spectrumSeries.take(key);
    m_seriesSpans.erase(key);
    m_summaries.erase(key);
    if (series)
        m_lostEntries[key] += series->size();
    for (int i = 0; i < size(); ++i) {
        const std::shared_ptr<Record> record = at(i);
        auto &spectra = record->spectra;
        const auto kept =
            std::remove_if(spectra.begin(), spectra.end(),
                           [key](const std::shared_ptr<SpectMath::Spectrum> &s) { return s->info.get() == key; });
        if (kept == spectra.end())
            continue;
        spectra.erase(kept, spectra.end());
        Q_EMIT updated(i, record, SpectraChanged);
    }
    return series;
}

void Datastore::addFullRecord(const Spectrometer::FullRecordPointer &fullRecord)
{
    addOrReplace(fullRecord, false);
}

void Datastore::upsertFullRecord(const Spectrometer::FullRecordPointer &fullRecord)
{
    addOrReplace(fullRecord, true);
}

void Datastore::addOrReplace(const Spectrometer::FullRecordPointer &fullRecord, bool replace)
{
    if (!fullRecord)
        return;
    // Only the first record of that time is compared: one with the same head behind it doesn't count as known.
    int index = lowerBoundIndex(fullRecord->beginTime);
    int flag = RecordCameIn;
    if (index == size() || static_cast<const Spectrometer::RecordHead &>(*at(index)) != *fullRecord) {
        index = insertAt(index, makeRecord(*fullRecord));
    } else if (replace) {
        static_cast<Spectrometer::FullRecord &>(*at(index)) = *fullRecord;
        updateMarks(index);
        flag = DataReplaced;
    }
    Q_EMIT updated(index, at(index), flag);
}

void Datastore::updateFullRecord(const Spectrometer::FullRecordPointer &fullRecord)
{
    const int index = fullRecord ? indexOfHead(*fullRecord) : -1;
    if (index < 0)
        return;
    static_cast<Spectrometer::FullRecord &>(*at(index)) = *fullRecord;
    updateMarks(index);
    Q_EMIT updated(index, at(index), DataReplaced);
}

void Datastore::replaceSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record)
{
    takeSpectra(spectrum_record, true);
}

void Datastore::addSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record)
{
    takeSpectra(spectrum_record, false);
}

void Datastore::takeSpectra(const SpectMath::SpectrumRecordPointer &incoming, bool replace)
{
    const int index = incoming ? indexOfHead(*incoming) : -1;
    if (index < 0)
        return;
    const std::shared_ptr<Record> record = at(index);
    if (replace)
        record->spectra.clear();
    record->spectra.reserve(record->spectra.size() + incoming->spectra.size()); // exactly: there are many records
    record->spectraProvisional = incoming->provisional;
    for (const auto &spectrum : incoming->spectra) {
        if (!spectrum || !spectrum->info)
            continue;
        record->spectra.push_back(spectrum);
        enterSpectrum(record, spectrum);
    }
    Q_EMIT updated(index, record, SpectraChanged);
}
