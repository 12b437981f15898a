#pragma once

#include "datafiles/reading/headerlines.h"

#include <memory>

/// A guess at a block, made from its header and from what was known some files ago: its rows can be parsed long before
/// their turn comes, and in their turn they are good if the block proves to have this layout. Doesn't change; any
/// thread.
class BlockForecast {
public:
    /// Logs nothing.
    BlockForecast(const HeaderLines &header, const QByteArray &columnRow, const FileReaderState &known);

    /// Null behind a header that can't be understood.
    const LineReader *parser() const { return m_reader.get(); }
    /// What is known behind the header.
    const FileReaderState &state() const { return *m_state; }
    /// The memory that its header takes.
    std::size_t memory() const { return m_memory; }

private:
    std::unique_ptr<FileReaderState> m_state;
    std::unique_ptr<LineReader> m_reader;
    std::size_t m_memory = 0;
};
