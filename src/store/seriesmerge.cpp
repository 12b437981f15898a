#include "store/seriesmerge.h"

#include <algorithm>
#include <utility>

namespace {

void lowerGap(std::int64_t &gap, std::int64_t distance)
{
    if (gap == 0 || distance < gap)
        gap = distance;
}

std::int64_t distance(const SpectrumRecord &earlier, const SpectrumRecord &later)
{
    return saturatedSubtract(ticksOf(later.record->midTime), ticksOf(earlier.record->midTime));
}

/// An entry between two places, with its total concentration.
struct MovedEntry {
    SpectrumRecord entry;
    double totalDecades;
};

} // namespace

void updateGaps(SpectrumRecord *previous, SpectrumRecord &entry, SpectrumRecord *next)
{
    const std::int64_t before = previous ? distance(*previous, entry) : 0;
    const std::int64_t after = next ? distance(entry, *next) : 0;
    if (previous && next)
        entry.nearestGap = std::min(before, after);
    else
        entry.nearestGap = previous ? before : after;
    if (previous)
        lowerGap(previous->nearestGap, before);
    if (next)
        lowerGap(next->nearestGap, after);
}

void mergeSpectra(std::deque<SpectrumRecord> &series, SeriesSummary &summary, std::size_t place,
                  const std::vector<SpectrumRecord> &entries)
{
    // All memory is taken before anything moves: what follows doesn't fail.
    std::vector<MovedEntry> former, ofOneTime; // of those of one time the last one goes first
    former.reserve(series.size() - place);
    ofOneTime.reserve(entries.size() + 1);
    summary.reserve(series.size() + entries.size());
    const std::size_t size = series.size();
    series.resize(size + entries.size());
    for (std::size_t i = place; i < size; ++i)
        former.push_back({std::move(series[i]), summary.totalDecades()[i]});
    summary.truncateTotals(place);

    std::size_t end = place; // of the entries that stand in their places
    auto next = former.begin();
    const auto put = [&](MovedEntry &moved) {
        series[end++] = std::move(moved.entry);
        summary.appendTotal(moved.totalDecades);
    };
    const auto putUpTo = [&](RecordTime begin) {
        if (!ofOneTime.empty() && ofOneTime.back().entry.record->beginTime < begin) {
            std::for_each(ofOneTime.rbegin(), ofOneTime.rend(), put);
            ofOneTime.clear();
        }
        for (; next != former.end() && next->entry.record->beginTime < begin; ++next)
            put(*next);
    };
    for (const SpectrumRecord &entry : entries) {
        putUpTo(entry.record->beginTime);
        if (ofOneTime.empty() && next != former.end() && next->entry.record == entry.record)
            ofOneTime.push_back(std::move(*next++));
        if (!ofOneTime.empty() && ofOneTime.back().entry.record == entry.record) {
            MovedEntry &known = ofOneTime.back();
            summary.discount(*known.entry.spectrum);
            known.entry.spectrum = entry.spectrum;
            known.totalDecades = summary.count(*entry.spectrum);
        } else {
            ofOneTime.push_back({{entry.record, entry.spectrum}, summary.count(*entry.spectrum)});
        }
        const std::size_t many = ofOneTime.size();
        SpectrumRecord *const behind = many > 1               ? &ofOneTime[many - 2].entry
                                       : next == former.end() ? nullptr
                                                              : &next->entry;
        updateGaps(end == 0 ? nullptr : &series[end - 1], ofOneTime.back().entry, behind);
    }
    std::for_each(ofOneTime.rbegin(), ofOneTime.rend(), put);
    std::for_each(next, former.end(), put);
    series.resize(end);
}
