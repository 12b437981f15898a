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

/// For each kind of rows, whether they are expected to be the first ones of their moments, or the first ones with such
/// numbers, so that numbers may as well be parsed into a record. Any thread.
using RecordForecast = std::array<std::atomic<bool>, RowLayout::kinds>;

/// Parses the lines of chunks of files, each by itself. One for each thread.
class ChunkParser {
public:
    explicit ChunkParser(const RecordForecast &records) : m_records(records) {}

    /// Reads and parses a chunk, which is whole afterwards, or not if there isn't the memory for it, or if its file has
    /// to be read as one. `known` is what some headers before have told. Throws nothing.
    void parse(ParsedChunk &chunk, const DataFile &file, FileForecast &forecast, const FileReaderState &known,
               std::size_t mostMemory);

private:
    bool parseLines(ParsedChunk &chunk, FileForecast &forecast, const FileReaderState &known, std::size_t mostMemory);
    bool isOfHeader(TextView text, ParsedChunk &chunk, FileForecast &forecast, const FileReaderState &known);
    void parseRow(ParsedRow &row, ParsedRows &rows);

    const RecordForecast &m_records;
    FieldSplitter m_splitter;
    HeaderLines m_header;
    bool m_inHeader = false;
    std::shared_ptr<const BlockForecast> m_block; ///< of the line at hand
};
