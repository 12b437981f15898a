#include "store/datastore.h"

#include "store/bisect.h"

#include <QDebug>

#include <algorithm>

namespace {

bool sameTimes(const Record &record, RecordTime begin, RecordTime end)
{
    return record.beginTime == begin && record.endTime == end;
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
    return m_spectra.all().value(key);
}

const SpanIndex &Datastore::recordSpans() const
{
    for (std::size_t i = m_recordSpans.size(); i < m_records.size(); ++i)
        m_recordSpans.append(m_records[i]->beginTime, m_records[i]->endTime);
    return m_recordSpans;
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
    m_spectra.updateSpans();
}

// ---- search

Datastore::iterator Datastore::lowerBound(RecordTime time)
{
    return m_records.begin() + lowerBoundIndex(time);
}

int Datastore::lowerBoundIndex(RecordTime time) const
{
    const std::size_t count = m_records.size();
    const bool indexed = m_recordSpans.size() == count;
    const auto isBelow = [&](std::size_t i) {
        return indexed ? m_recordSpans.begin(i) < ticksOf(time) : m_records[i]->beginTime < time;
    };
    const auto fits = [&](std::size_t place) {
        return place <= count && (place == 0 || isBelow(place - 1)) && (place == count || !isBelow(place));
    };
    // Rows come in order of time: mostly the place after the last one found is meant, or the same again.
    const auto last = std::size_t(m_lastFound);
    std::size_t found;
    if (fits(last + 1))
        found = last + 1;
    else if (fits(last))
        found = last;
    else if (indexed)
        found = m_recordSpans.lowerBound(ticksOf(time));
    else
        found = bisect(count, isBelow);
    m_lastFound = int(found);
    return m_lastFound;
}

int Datastore::indexOfHead(const Spectrometer::RecordHead &head) const
{
    for (int i = lowerBoundIndex(head.beginTime); i < size() && at(i)->beginTime == head.beginTime; ++i) {
        if (static_cast<const Spectrometer::RecordHead &>(*at(i)) == head)
            return i;
    }
    return -1;
}

int Datastore::indexOf(RecordTime begin, RecordTime end) const
{
    for (int i = lowerBoundIndex(begin); i < size() && at(i)->beginTime == begin; ++i) {
        if (sameTimes(*at(i), begin, end))
            return i;
    }
    return -1;
}

int Datastore::firstIndexFrom(RecordTime time) const
{
    return lowerBoundIndex(time);
}

int Datastore::lastIndexEndingBy(RecordTime time) const
{
    int i = lowerBoundIndex(time);
    while (i < size() && at(i)->beginTime == time)
        ++i;
    do {
        --i;
    } while (i >= 0 && effectiveEnd(*at(i)) > time);
    return i;
}

int Datastore::indexOfRecord(const std::shared_ptr<Record> &record) const
{
    if (!record)
        return -1;
    for (int i = lowerBoundIndex(record->beginTime); i < size() && at(i)->beginTime == record->beginTime; ++i) {
        if (at(i) == record)
            return i;
    }
    return -1;
}

std::shared_ptr<Record> Datastore::neighbour(const std::shared_ptr<Record> &record, int steps) const
{
    const int index = indexOfRecord(record);
    const std::int64_t wanted = std::int64_t(index) + steps;
    return index < 0 || wanted < 0 || wanted >= size() ? nullptr : at(int(wanted));
}

std::shared_ptr<Record> Datastore::neighbourWithOpmode(const std::shared_ptr<Record> &record, int steps,
                                                       int opmode) const
{
    if (steps == 0)
        return record;
    const int index = indexOfRecord(record);
    if (index < 0)
        return nullptr;
    int answer = index;
    std::int64_t wanted = std::abs(std::int64_t(steps));
    const int direction = steps > 0 ? 1 : -1;
    for (int i = index + direction; i >= 0 && i < size() && wanted > 0; i += direction) {
        if (at(i)->opmode == opmode) {
            answer = i;
            --wanted;
        }
    }
    return at(answer);
}

// ---- changes

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
    m_records.insert(m_records.begin() + index, record);
    m_recordSpans.insertOrForget(std::size_t(index), record->beginTime, record->endTime);
    m_recordMarks.insertOrForget(std::size_t(index), RecordMarks::of(*record));
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
    m_spectra.dropUpTo(dropped->beginTime); // another record of the same beginTime loses its entries too
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

void Datastore::takeIn(const std::shared_ptr<Record> &record)
{
    const int index = insertAt(lowerBoundIndex(record->beginTime), record);
    Q_EMIT updated(index, record, RecordCameIn);
}

void Datastore::clear()
{
    m_records.clear();
    m_recordSpans.truncate(0);
    m_recordMarks.truncate(0);
    m_spectra.clear();
    m_lastFound = 0;
}

std::shared_ptr<Datastore::Series> Datastore::removeSpectrum(SeriesKey key)
{
    std::shared_ptr<Series> series = m_spectra.remove(key);
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
        if (at(index) != fullRecord)
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
        m_spectra.enter(record, spectrum);
    }
    Q_EMIT updated(index, record, SpectraChanged);
}
