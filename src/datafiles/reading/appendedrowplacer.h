#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/reading/appendedrows.h"

#include <functional>
#include <map>
#include <utility>

class BlockReader;
class FileReader;

/// Puts rows that were appended to files into the store of the read of those files, a few at a time, and has the store
/// tell what came in and what has changed. The outcome is that of a read of all files as they are now, or a
/// contradiction. On the thread of the store.
class AppendedRowPlacer {
public:
    explicit AppendedRowPlacer(std::shared_ptr<FileReader> reader);
    ~AppendedRowPlacer();

    /// Takes rows of a file that follow those it got of the file before. There must be none left.
    void take(AppendedRows rows);
    bool hasRows() const { return m_rows.chunk != nullptr; }
    /// Places the next few rows; tells whether some are left.
    bool placeSome();
    /// Only another read of all files tells what there is. What was placed stays.
    bool isContradicted() const;
    int rowsPlaced() const { return m_rowsPlaced; }

    /// Is called for flags that came to a record that was there before, with its head and these flags alone. May be
    /// empty.
    void setFlagsTeller(std::function<void(const Spectrometer::FullRecordPointer &)> tell)
    {
        m_tellFlags = std::move(tell);
    }

    /// Spectra of descriptions for which it is false don't come into the store. May be empty.
    using SpectrumFilter = std::function<bool(const SpectMath::SpectrumInfo *)>;
    void setSpectrumFilter(SpectrumFilter isWanted) { m_isWanted = std::move(isWanted); }

private:
    BlockReader &blocksOf(const AppendedRows &rows);
    void tell();
    void tellNew(const std::shared_ptr<Record> &record);
    void tellChanged(const std::vector<SpectrumRecord> &spectra);
    void tellSpectra(const std::shared_ptr<Record> &record, std::size_t count);
    void addSpectra(const std::shared_ptr<SpectMath::SpectrumRecord> &added);
    void tellFlags(const Record &record, std::size_t first);

    std::shared_ptr<FileReader> m_reader;
    FileReaderState &m_state;
    Spectrometer::RecordMetadata m_metadata; ///< as the read has left it
    std::map<QString, std::unique_ptr<BlockReader>> m_blocks;
    std::vector<FileReaderState::ChangedRecord> m_changes; ///< by the rows that are being placed
    std::function<void(const Spectrometer::FullRecordPointer &)> m_tellFlags;
    SpectrumFilter m_isWanted;
    AppendedRows m_rows;
    std::size_t m_next = 0; ///< of those rows
    int m_rowsPlaced = 0;
};
