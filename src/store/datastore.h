#pragma once

#include "records/record.h"
#include "spectra/spectrum.h"

#include <QMap>
#include <QObject>

#include <deque>
#include <vector>

/// An entry of a spectrum series: one record that has a spectrum of the series' description.
struct SpectrumRecord {
    std::shared_ptr<Record> record;
    std::shared_ptr<SpectMath::Spectrum> spectrum;
    std::int64_t nearestGap = 0; ///< distance in midTime to the nearest neighbour, ticks; 0 for a lone entry
};

/// What Datastore::updated tells; each emission carries exactly one.
enum UpdateFlag { RecordCameIn = 1, DataReplaced = 2, SpectraChanged = 4 };

/// The in-memory store of all records in order of beginTime, and beside it the series of the same records by spectrum
/// description. No locks: one thread owns a store at a time. An index is a place in that order; nobody keeps one past a
/// signal.
class Datastore : public QObject {
    Q_OBJECT
public:
    using Records = std::deque<std::shared_ptr<Record>>;
    using iterator = Records::iterator;
    using Series = std::deque<SpectrumRecord>;
    using SeriesKey = const SpectMath::SpectrumInfo *;

    explicit Datastore(QObject *parent = nullptr);
    ~Datastore() override;

    /// Whether the oldest records are dropped beyond maxRecords. On, with 1000, in a new store.
    void setLimitRecords(bool on);
    void setMaxRecords(int count);

    // ---- read access
    int size() const { return int(m_records.size()); }
    bool isEmpty() const { return m_records.empty(); }
    const std::shared_ptr<Record> &at(int index) const { return m_records[std::size_t(index)]; }
    const Records &records() const { return m_records; }
    /// Null if there is no such series.
    std::shared_ptr<const Series> series(SeriesKey key) const;
    const QMap<SeriesKey, std::shared_ptr<Series>> &spectrumSeries() const { return m_spectrumSeries; }

    // ---- search, all by one bisection over beginTime
    iterator lowerBound(RecordTime time);
    int lowerBoundIndex(RecordTime time) const;
    int indexOfHead(const Spectrometer::RecordHead &head) const;
    int indexOf(RecordTime begin, RecordTime end) const;
    int firstIndexFrom(RecordTime time) const;
    int lastIndexEndingBy(RecordTime time) const;
    std::shared_ptr<Record> neighbour(const std::shared_ptr<Record> &record, int steps) const;
    std::shared_ptr<Record> neighbourWithOpmode(const std::shared_ptr<Record> &record, int steps, int opmode) const;
    /// The first entry of a series whose record doesn't begin before the time.
    static std::size_t lowerBoundOf(const Series &series, RecordTime time);

    // ---- changes that emit nothing but `removed`, for readers
    iterator insertRecord(iterator position, std::shared_ptr<Record> record);
    /// Takes in many records at once, themselves in ascending order of beginTime: the same result as inserting each at its
    /// lowerBound, from the last to the first, at the cost of one merge. Emits nothing.
    void mergeRecords(std::vector<std::shared_ptr<Record>> &&records);
    /// Gives the record's spectrum its entry in the series of its description.
    void enterSpectrum(const std::shared_ptr<Record> &record, const std::shared_ptr<SpectMath::Spectrum> &spectrum);

    /// Drops the series and takes its spectra out of every record.
    void removeSpectrum(SeriesKey key);

public Q_SLOTS:
    void addFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    void updateFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    void upsertFullRecord(const Spectrometer::FullRecordPointer &fullRecord);
    void replaceSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record);
    void addSpectra(const SpectMath::SpectrumRecordPointer &spectrum_record);

Q_SIGNALS:
    void updated(int index, std::shared_ptr<Record> record, int flags);
    void removed(int index, std::shared_ptr<Record> record);

private:
    Records m_records;
    int m_maxRecords = 1000;
    bool m_limitRecords = true;
    QMap<SeriesKey, std::shared_ptr<Series>> m_spectrumSeries;
};
