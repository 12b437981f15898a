#pragma once

#include "store/recordmarks.h"
#include "store/spanindex.h"
#include "store/spectrumindex.h"
#include "util/valuequeue.h"

#include <QObject>

#include <deque>
#include <vector>

/// The kinds of change that Datastore::updated tells; each emission carries exactly one.
enum UpdateFlag { RecordCameIn = 1, DataReplaced = 2, SpectraChanged = 4 };

/// The in-memory store of all records in order of beginTime, and beside it the series of the same records by spectrum
/// description. No locks: one thread owns a store at a time, reading operations included (they keep what they found
/// last and bring the span indexes up to date). An index is a place in that order; nobody keeps one past a signal. The
/// times of a record that is in the store never change.
class Datastore : public QObject {
    Q_OBJECT
public:
    using Records = std::deque<std::shared_ptr<Record>>;
    using iterator = Records::iterator;
    using Series = SpectrumIndex::Series;
    using SeriesKey = SpectrumIndex::Key;

    explicit Datastore(QObject *parent = nullptr);
    ~Datastore() override;

    /// Whether the oldest records are dropped beyond maxRecords. On, with 1000, in a new store.
    void setLimitRecords(bool on);
    void setMaxRecords(int count);

    // ---- read access
    int size() const { return int(m_records.size()); }
    bool isEmpty() const { return m_records.empty(); }
    /// An index out of range stops the program.
    const std::shared_ptr<Record> &at(int index) const;
    const Records &records() const { return m_records; }
    /// Null if there is no such series.
    std::shared_ptr<const Series> series(SeriesKey key) const;
    const SpectrumIndex::AllSeries &spectrumSeries() const { return m_spectra.all(); }
    /// Begins and ends of all records, index for index. Valid until the next change of the store.
    const SpanIndex &recordSpans() const;
    /// Begins and ends of the records of a series, entry for entry; an empty index if there is no such series. Valid
    /// until the next change of the store.
    const SpanIndex &seriesSpans(SeriesKey key) const { return m_spectra.spans(key); }
    /// The marks of each record, index for index. Valid until the next change of the store.
    const RecordMarks *recordMarks() const;
    /// Brings spans and marks up to date, so that the first caller needn't wait for it.
    void updateIndexes() const;
    /// The concentrations of all of the series' spectra that didn't fail; an empty one if there is no such series.
    const SpectMath::DecadeHistogram &histogram(SeriesKey key) const { return m_spectra.histogram(key); }
    /// The number concentrations over the whole axis of the series' spectra, entry for entry, by decadesOf(); NaN for
    /// those that failed. Null if there is no such series. Valid until the next change of the store.
    const double *totalDecades(SeriesKey key) const { return m_spectra.totalDecades(key); }
    /// How many records it has lost so far, each the first one then. Values kept beside the records tell by this how
    /// many go at its front.
    std::size_t lostRecords() const { return m_lostRecords; }
    /// The same of the entries of a series; those of one that was removed count as lost.
    std::size_t lostEntries(SeriesKey key) const { return m_spectra.lostEntries(key); }

    // ---- search, all by one bisection over beginTime
    iterator lowerBound(RecordTime time);
    /// The first record that doesn't begin before the time; size() if there is none.
    int lowerBoundIndex(RecordTime time) const;
    /// The record with a head equal in all seven fields, or -1.
    int indexOfHead(const Spectrometer::RecordHead &head) const;
    /// The record with exactly these two times, or -1.
    int indexOf(RecordTime begin, RecordTime end) const;
    int firstIndexFrom(RecordTime time) const;
    /// The last record with endTime at or before the time, looking backward from the last that begins by then; or -1.
    int lastIndexEndingBy(RecordTime time) const;
    /// The record that many places away (negative: earlier), or null.
    std::shared_ptr<Record> neighbour(const std::shared_ptr<Record> &record, int steps) const;
    /// The record that many records of the mode away (negative: earlier), or the last one met if there are fewer;
    /// `record` itself if there is none. Null if `record` isn't stored.
    std::shared_ptr<Record> neighbourWithOpmode(const std::shared_ptr<Record> &record, int steps, int opmode) const;
    /// The first entry of a series whose record doesn't begin before the time.
    static std::size_t lowerBoundOf(const Series &series, RecordTime time)
    {
        return SpectrumIndex::lowerBoundOf(series, time);
    }

    // ---- changes that emit nothing but `removed`, for readers
    /// The position is the one that a search found. Drops the oldest records first where the store is limited and full.
    iterator insertRecord(iterator position, const std::shared_ptr<Record> &record);
    /// Takes in many records at once, themselves in ascending order of beginTime: the same result as inserting each at
    /// its lowerBound, from the last to the first, at the cost of one merge. Emits nothing unless the limit drops
    /// records. Without a limit, it takes in all or, with std::bad_alloc, none.
    void mergeRecords(std::vector<std::shared_ptr<Record>> &&records);
    /// Gives the record's spectrum its entry in the series of its description.
    void enterSpectrum(const std::shared_ptr<Record> &record, const std::shared_ptr<SpectMath::Spectrum> &spectrum)
    {
        m_spectra.enter(record, spectrum);
    }
    /// Gives many spectra their entries, in ascending order of their records' beginTime, as SpectrumIndex::enter().
    void enterSpectra(std::vector<SpectrumRecord> &&entries) { m_spectra.enter(std::move(entries)); }
    /// Inserts a record at its lowerBound, itself and no copy, and tells it as one that came in.
    void takeIn(const std::shared_ptr<Record> &record);
    /// Forgets all records and series, for lack of memory. Allocates nothing, and emits nothing.
    void clear();

    /// Drops the series and takes its spectra out of every record. Returns the former series, null if there was none.
    /// It keeps the spectra alive, because freeing very many takes a while.
    std::shared_ptr<Series> removeSpectrum(SeriesKey key);

public Q_SLOTS:
    // Ignored are a null pointer, a spectrum without a description, and, where a record is updated or spectra are
    // replaced or added, a head that the store doesn't know.
    void addFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    void updateFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    /// A record of the store itself, whose values were changed in place, is told as one whose data were replaced.
    void upsertFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    /// Entries of the record's former spectra stay in their series: only those under the new list's keys are replaced.
    void replaceSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record);
    void addSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record);

Q_SIGNALS:
    void updated(int index, std::shared_ptr<Record> record, int flags);
    void removed(int index, std::shared_ptr<Record> record);

private:
    int indexOfRecord(const std::shared_ptr<Record> &record) const;
    void updateMarks(int index);
    int insertAt(int index, const std::shared_ptr<Record> &record);
    void dropOldest();
    void addOrReplace(const Spectrometer::FullRecordPointer &fullRecord, bool replace);
    void takeSpectra(const SpectMath::SpectrumRecordPointer &incoming, bool replace);

    Records m_records;
    int m_maxRecords = 1000;
    bool m_limitRecords = true;
    mutable SpanIndex m_recordSpans;               ///< may lack records at the end
    mutable ValueQueue<RecordMarks> m_recordMarks; ///< likewise
    SpectrumIndex m_spectra;
    std::size_t m_lostRecords = 0;
    mutable int m_lastFound = 0; ///< where the last search ended: the next one is mostly for the place after it
};
