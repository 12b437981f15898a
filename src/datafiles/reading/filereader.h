#pragma once

#include "datafiles/parsing/filereaderstate.h"

#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>

/// What a read has met so far.
struct ReadStatistics {
    std::int64_t rows = 0;        ///< lines of all kinds
    std::int64_t ignoredRows = 0; ///< lines that no reader took: outside of any block, behind a bad header, of a header
                                  ///< without an end, too long
    std::int64_t bytes = 0;
};

/// Reads one file after another into a store of its own. Made on any thread, used by one at a time; needs no window and
/// no event loop. Faults of the files go to the log and never stop a read.
class FileReader {
public:
    using SpectrumMap = FileReaderState::SpectrumMap;

    /// The spectrum descriptions of the read before, and the limits: rows that lie entirely outside are passed over.
    FileReader(const SpectrumMap &previous, RecordTime begin, RecordTime end);
    ~FileReader();

    /// Reads a file; the result is its number of lines. Throws FileReaderError when the file as a whole fails; what was
    /// read of it until then stays.
    int readFile(const QString &path);

    /// Grows the vectors of all records to the final sizes, with NaN in new slots. Called once the read is over.
    void finishRecords();

    /// Is told the bytes of each block as it is read, on the reading thread.
    void setByteCounter(std::function<void(std::int64_t)> counter) { m_byteCounter = std::move(counter); }

    const std::shared_ptr<Datastore> &datastore() const { return m_state.datastore; }
    const Spectrometer::RecordMetadataPointer &metadata() const { return m_state.metadata; }
    /// The descriptions of all spectra in order of first appearance.
    const QVector<SpectMath::SpectrumInfoPointer> &spectrumInfos() const { return m_state.spectrumOrder; }
    /// The same by hash, for the next read.
    const SpectrumMap &spectrumMap() const { return m_state.spectrumInfos; }
    const ReadStatistics &statistics() const { return m_statistics; }

private:
    Log::Logger m_logger;
    FileReaderState m_state;
    ReadStatistics m_statistics;
    std::function<void(std::int64_t)> m_byteCounter;
};
