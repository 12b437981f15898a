#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/reading/filestretch.h"
#include "datafiles/reading/readstatistics.h"

#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>

class BlockReader;
class LineScanner;
class ReadAhead;

/// Reads one file after another into a store of its own. Made on any thread, used by one at a time; needs no window and
/// no event loop. Faults of the files go to the log and never stop a read.
class FileReader {
public:
    using SpectrumMap = FileReaderState::SpectrumMap;

    /// The spectrum descriptions of the read before, of which nothing is taken over, and the limits: rows that lie
    /// entirely outside are passed over.
    FileReader(const SpectrumMap &previous, RecordTime begin, RecordTime end);
    ~FileReader();

    /// The operating mode of old-style records whose files tell none; empty leaves it unknown.
    void setAssumedOpmode(const QString &name) { m_assumedOpmode = name; }

    /// A last line without a line feed is a row that is still being written, and stays unread. Else it is a row like
    /// others.
    void setHalfRowsAwaited(bool on) { m_halfRowsAwaited = on; }

    /// Reads a file; the result is its number of lines. Throws FileReaderError when the file as a whole fails; records
    /// read until then stay. Throws std::bad_alloc; the store is sound then, but may lack records of the file.
    int readFile(const QString &path);
    /// The same for the file of that index among those that are read ahead.
    int readFile(const QString &path, ReadAhead &ahead, int index);
    /// What is known now, for a ReadAhead.
    std::unique_ptr<const FileReaderState> makeForecast() const { return m_state.makeForecast(); }

    /// Grows the vectors of all records to the final sizes, with NaN in new slots, and gives records without a mode the
    /// assumed one. Called once the read is over. Throws std::bad_alloc, and then no record may be looked at.
    void finishRecords();
    /// Empties the store. Needs no memory.
    void dropRecords();

    /// Is told the bytes of each block as it is read, on the reading thread.
    void setByteCounter(std::function<void(std::int64_t)> counter) { m_byteCounter = std::move(counter); }

    const std::shared_ptr<Datastore> &datastore() const { return m_state.datastore; }
    const Spectrometer::RecordMetadataPointer &metadata() const { return m_state.metadata; }
    /// The descriptions of all spectra in order of first appearance.
    const QVector<SpectMath::SpectrumInfoPointer> &spectrumInfos() const { return m_state.spectrumOrder; }
    /// The same by hash, for the next read.
    const SpectrumMap &spectrumMap() const { return m_state.spectrumInfos; }
    const ReadStatistics &statistics() const { return m_statistics; }
    ReadStatistics &statistics() { return m_statistics; }
    /// How far each file was read, in the order of the read.
    const std::vector<FileStretch> &stretches() const { return m_stretches; }
    bool areHalfRowsAwaited() const { return m_halfRowsAwaited; }
    /// For one who goes on with the read.
    FileReaderState &state() { return m_state; }

private:
    void readLines(LineScanner &lines, BlockReader &blocks);
    /// The result is the offset that was come to.
    std::int64_t placeChunks(ReadAhead &ahead, int index, BlockReader &blocks);
    void countBytes(std::int64_t bytes);
    int knownWidth() const { return m_state.variableNames.size() + m_state.electrometerCount; }

    Log::Logger m_logger;
    FileReaderState m_state;
    ReadStatistics m_statistics;
    std::vector<FileStretch> m_stretches;
    bool m_halfRowsAwaited = false;
    QString m_assumedOpmode;
    std::function<void(std::int64_t)> m_byteCounter;
};
