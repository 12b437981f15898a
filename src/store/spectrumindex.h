#pragma once

#include "store/seriessummary.h"
#include "store/spanindex.h"
#include "store/spectrumrecord.h"

#include <QMap>

#include <deque>
#include <map>
#include <vector>

/// The spectra of a store by their description: a series for each, in order of the records' beginTime, with the spans
/// of its records and a summary of its values. A series never holds less than its summary tells: where memory runs out,
/// an entry is there with both or not at all. A value of the store's thread, reading operations included.
class SpectrumIndex {
public:
    using Series = std::deque<SpectrumRecord>;
    using Key = const SpectMath::SpectrumInfo *;
    using AllSeries = QMap<Key, std::shared_ptr<Series>>;

    const AllSeries &all() const { return m_series; }
    /// Empty for an unknown key, as all that is told of one.
    const SpanIndex &spans(Key key) const;
    void updateSpans() const;
    const SpectMath::DecadeHistogram &histogram(Key key) const;
    const double *totalDecades(Key key) const;
    /// The entries that a series has lost at its front so far; those of one that was removed count too.
    std::size_t lostEntries(Key key) const;
    /// The first entry of a series whose record doesn't begin before the time.
    static std::size_t lowerBoundOf(const Series &series, RecordTime time);

    /// Gives the record's spectrum its entry in the series of its description.
    void enter(const std::shared_ptr<Record> &record, const std::shared_ptr<SpectMath::Spectrum> &spectrum);
    /// Gives many spectra their entries, in ascending order of their records' beginTime: the same result as entering
    /// each in turn, at the cost of one merge for each series. The gaps given are not looked at. Throws std::bad_alloc,
    /// and then only some of the entries are there.
    void enter(std::vector<SpectrumRecord> &&entries);
    /// Drops entries from the front of each series for as long as their records don't begin behind the time.
    void dropUpTo(RecordTime time);
    /// The former series; null if there was none.
    std::shared_ptr<Series> remove(Key key);
    void clear();

private:
    /// The counts of a series.
    struct Knowledge {
        explicit Knowledge(const SpectMath::SpectrumInfoPointer &info) : summary(info) {}

        SeriesSummary summary;
        mutable SpanIndex spans; ///< may lack entries at the end
    };

    Series &seriesOf(const SpectMath::SpectrumInfoPointer &info);
    void enterOfOneSeries(const std::vector<SpectrumRecord> &entries);

    AllSeries m_series;
    std::map<Key, Knowledge> m_knowledge;
    std::map<Key, std::size_t> m_lostEntries;
};
