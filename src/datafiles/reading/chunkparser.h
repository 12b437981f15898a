#pragma once

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/reading/parsedchunk.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>

/// The block that the chunks of one file are expected to begin in, told by the one that holds the file's first header.
/// Any thread.
class FileForecast {
public:
    void set(std::shared_ptr<const BlockForecast> block);
    /// Nothing more is to be waited for.
    void settle();
    /// Waits for the file's first chunk, which another thread is parsing. Null if it ends within a header, or without
    /// one.
    std::shared_ptr<const BlockForecast> wait();

private:
    std::mutex m_mutex;
    std::condition_variable m_isSet;
    bool m_known = false;
    std::shared_ptr<const BlockForecast> m_block;
};

/// What is expected of the rows of a kind. Any thread.
struct RowForecast {
    std::atomic<bool> newRecord{true};
    std::atomic<bool> newNumbers{true};
};
using RowForecasts = std::array<RowForecast, RowLayout::kinds>;

/// What some headers have told so far.
using KnownState = std::shared_ptr<const FileReaderState>;

/// Parses the lines of chunks of files, each by itself. One for each thread.
class ChunkParser {
public:
    explicit ChunkParser(const RowForecasts &rows) : m_rows(rows) {}

    /// Reads and parses a chunk, which is whole afterwards, or not if there isn't the memory for it, or if its file has
    /// to be read as one. Throws nothing.
    void parse(ParsedChunk &chunk, const DataFile &file, FileForecast &forecast, const KnownState &known,
               std::size_t mostMemory);

private:
    bool parseLines(ParsedChunk &chunk, FileForecast &forecast, const KnownState &known, std::size_t mostMemory);
    bool isOfHeader(TextView text, ParsedChunk &chunk, FileForecast &forecast, const KnownState &known);
    std::shared_ptr<const BlockForecast> forecastBlock(const QByteArray &columnRow, const KnownState &known);
    void parseRow(ParsedRow &row, ParsedRows &rows);

    const RowForecasts &m_rows;
    FieldSplitter m_splitter;
    HeaderLines m_header;
    // The last block of a first header, since most files of a folder have the same one:
    HeaderLines m_lastHeader;
    QByteArray m_lastColumnRow;
    KnownState m_lastKnown;
    std::shared_ptr<const BlockForecast> m_lastBlock;
    bool m_inHeader = false;
    std::shared_ptr<const BlockForecast> m_block; ///< of the line at hand
};
