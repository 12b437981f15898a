#pragma once

#include "datafiles/parsing/fileorder.h"
#include "datafiles/parsing/memorybudget.h"
#include "datafiles/parsing/newrecord.h"
#include "datafiles/parsing/recordcollector.h"
#include "datafiles/parsing/rowlayout.h"
#include "log/logger.h"
#include "records/recordmetadata.h"
#include "store/datastore.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QStringList>

/// The state that all line readers of one read share, since a record is put together from several files. It grows with
/// every header. Used on the reading thread only.
struct FileReaderState {
    using SpectrumMap = QMap<QString, SpectMath::SpectrumInfoPointer>;

    FileReaderState(std::shared_ptr<Datastore> store, RecordTime begin, RecordTime end);
    /// A state of its own, without a record, for guesses at the headers that come next: it knows the same variables and
    /// electrometers, and has the same budget. It shares nothing that changes, so that it may go to another thread.
    std::unique_ptr<FileReaderState> makeForecast() const;

    Spectrometer::RecordMetadataPointer metadata;
    SpectrumMap spectrumInfos; ///< by hash, over all files of the read
    QStringList opmodeNames;   ///< index = opmode of a head
    QStringList variableNames; ///< index = variable index
    int electrometerCount = 0;
    bool electrometerCountKnown = false;
    std::shared_ptr<Datastore> datastore;
    RecordTime beginLimit; ///< rows that lie entirely outside the limits are passed over
    RecordTime endLimit;
    bool instrumentSettingsTaken = false; ///< the first header that has them as a map decides
    QHash<QString, std::shared_ptr<Spectrometer::RecordFlag>> recordFlags; ///< one object per text

    QVector<SpectMath::SpectrumInfoPointer> spectrumOrder; ///< the descriptions in order of first appearance
    RecordCollector records;
    MemoryBudget budget;
    FileOrder order;

    /// A record that was there before a row, and its flags then.
    struct ChangedRecord {
        std::shared_ptr<Record> record;
        std::size_t flagsBefore;
    };
    std::vector<ChangedRecord> *changes = nullptr; ///< where rows note the records that they change; may be null

    /// The mode of that name, added if it isn't known.
    int addOpmode(const QString &name);
    /// The mode of that name, or -1.
    int knownOpmode(const QString &name) const { return m_opmodeIndex.value(name, -1); }
    /// The slot of the variable of that name, added if it isn't known. Throws FileReaderError when there are too many.
    int variableOf(const QString &name, const QString &humanname, const QString &unit);
    /// The flag of that text, made if it isn't known; null when there are absurdly many. When those before it have
    /// properties out of proportion to the bytes read, it is a note with its whole text.
    std::shared_ptr<Spectrometer::RecordFlag> flagOf(const QString &text);
    /// Takes a finished description in: the result is the one known already if the two are equal. Where another stands
    /// under its hash, the result is null, or, with `rename`, the new one under a hash of its own. Throws
    /// FileReaderError when there are too many.
    SpectMath::SpectrumInfoPointer shareSpectrum(const std::shared_ptr<SpectMath::SpectrumInfo> &info, bool rename,
                                                 const Log::Logger &logger);

    bool isOutside(const RowTimes &times) const { return times.end < beginLimit || endLimit < times.begin; }
    /// Grows the record's vectors of those groups to the present metadata, with NaN in new slots. Never shrinks them.
    void widen(Record &record, NumberGroups groups) const;
    /// Whether records that were made for rows of that layout aren't wider than what is known.
    bool canTake(const RowLayout &layout) const
    {
        return layout.electrometers <= std::size_t(electrometerCount) &&
               layout.variables <= std::size_t(variableNames.size());
    }
    /// Whether the budget allows for that many more records of that width, and that many bytes beside them.
    bool isAffordable(std::size_t newRecords, int electrometers, int variables, std::size_t bytes = 0) const;
    bool isAffordable(std::size_t bytes) const
    {
        return isAffordable(0, electrometerCount, variableNames.size(), bytes);
    }
    /// The most nodes that the tree of a header of that size may have.
    qint64 mostNodes(int textSize) const;

    /// Gives the record a spectrum of that description.
    void addSpectrum(const std::shared_ptr<Record> &record, const SpectMath::SpectrumInfoPointer &info,
                     std::shared_ptr<SpectMath::Spectrum> spectrum);
    /// Counts the memory of spectra, and that of series for descriptions that had no spectrum yet. False, and nothing
    /// is counted, if that is more than the read may hold.
    bool takeSpectra(std::size_t bytes);
    bool takeSeries(const QVector<SpectMath::SpectrumInfoPointer> &infos);

    /// A row of that mode belongs to a record that was there before, and is to change it.
    void noteFound(const std::shared_ptr<Record> &record, const QString &mode);

private:
    static std::size_t bytesPerRecord(int electrometers, int variables);

    QHash<QString, int> m_opmodeIndex;
    QHash<QString, int> m_variableIndex;
    QHash<QString, int> m_renamed; ///< hash text to the last number hung to it
    QSet<const SpectMath::SpectrumInfo *> m_withSeries;
    qint64 m_flagNodes = 0; ///< values in the properties of all flags
};
