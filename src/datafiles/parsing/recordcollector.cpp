#include "datafiles/parsing/recordcollector.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

bool beginsBefore(const std::shared_ptr<Record> &record, RecordTime time)
{
    return record->beginTime < time;
}

} // namespace

std::shared_ptr<Record> RecordCollector::find(RecordTime begin)
{
    const int slot = m_store->lowerBoundIndex(begin); // quick for the place behind the last one found
    if (slot < m_store->size() && m_store->at(slot)->beginTime == begin)
        return m_store->at(slot);
    if (!m_ascending.empty() && !beginsBefore(m_ascending.back(), begin)) {
        const auto found = std::lower_bound(m_ascending.begin(), m_ascending.end(), begin, beginsBefore);
        if ((*found)->beginTime == begin)
            return *found;
    }
    if (!m_strays.empty()) {
        const auto found = m_strays.find(begin);
        if (found != m_strays.end())
            return found->second;
    }
    return nullptr;
}

void RecordCollector::add(const std::shared_ptr<Record> &record)
{
    if (m_ascending.empty() || beginsBefore(m_ascending.back(), record->beginTime))
        m_ascending.push_back(record);
    else
        m_strays.emplace(record->beginTime, record);
}

void RecordCollector::addSpectrum(const std::shared_ptr<Record> &record,
                                  const std::shared_ptr<SpectMath::Spectrum> &spectrum)
{
    m_spectra.push_back({record, spectrum, 0});
}

RecordCollector::News RecordCollector::take()
{
    News news{std::exchange(m_ascending, {}), std::exchange(m_spectra, {})};
    std::vector<std::shared_ptr<Record>> &records = news.records;
    std::map<RecordTime, std::shared_ptr<Record>> strays = std::exchange(m_strays, {});
    if (!strays.empty()) {
        const auto middle = std::ptrdiff_t(records.size());
        for (auto &stray : strays)
            records.push_back(std::move(stray.second));
        std::inplace_merge(records.begin(), records.begin() + middle, records.end(),
                           [](const auto &a, const auto &b) { return a->beginTime < b->beginTime; });
    }
    return news;
}

void RecordCollector::merge()
{
    auto [records, spectra] = take();
    m_store->mergeRecords(std::move(records));
    const auto inOrder = [](const SpectrumRecord &a, const SpectrumRecord &b) {
        return a.record->beginTime < b.record->beginTime;
    };
    if (!std::is_sorted(spectra.begin(), spectra.end(), inOrder))
        std::stable_sort(spectra.begin(), spectra.end(), inOrder);
    m_store->enterSpectra(std::move(spectra));
}

void RecordCollector::clear()
{
    m_ascending.clear();
    m_strays.clear();
    m_spectra.clear();
}
