#include "datafiles/reading/chunkparser.h"

#include <new>

void FileForecast::set(std::shared_ptr<const BlockForecast> block)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_block = std::move(block);
    m_known = true;
    m_isSet.notify_all();
}

void FileForecast::settle()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_known = true;
    m_isSet.notify_all();
}

std::shared_ptr<const BlockForecast> FileForecast::wait()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isSet.wait(lock, [this] { return m_known; });
    return m_block;
}

void ChunkParser::parse(ParsedChunk &chunk, const DataFile &file, FileForecast &forecast, const KnownState &known,
                        std::size_t mostMemory)
{
    try {
        chunk.isWhole = chunk.load(file) && parseLines(chunk, forecast, known, mostMemory);
    } catch (const std::bad_alloc &) { // told when the chunk's turn comes, if there is none then either
    }
    if (!chunk.isWhole)
        chunk.clear();
    if (chunk.isFirst())
        forecast.settle();
    m_header = HeaderLines();
    m_block.reset();
}

/// False if the rows would take too much memory.
bool ChunkParser::parseLines(ParsedChunk &chunk, FileForecast &forecast, const KnownState &known,
                             std::size_t mostMemory)
{
    m_inHeader = false;
    m_block = chunk.isFirst() ? nullptr : forecast.wait();
    if (m_block)
        chunk.blocks.push_back(m_block);
    for (TextView line; chunk.nextLine(&line);) {
        const bool isOfHeader = this->isOfHeader(line, chunk, forecast, known);
        chunk.rows.rows.emplace_back();
        chunk.rows.rows.back().line = line;
        if (!isOfHeader && m_block && m_block->parser())
            parseRow(chunk.rows.rows.back(), chunk.rows);
        if (chunk.memory() > mostMemory)
            return false;
    }
    return true;
}

/// Takes the line into the header that is open, or as a comment. At the end of a header its block is the one at hand.
bool ChunkParser::isOfHeader(TextView text, ParsedChunk &chunk, FileForecast &forecast, const KnownState &known)
{
    const bool isComment = !text.empty() && text.front() == '#';
    if (!isComment && !m_inHeader)
        return false;
    const QByteArray line = bytesOf(text);
    if (!isComment) {
        m_block = forecastBlock(HeaderLines::isColumnRow(line) ? line : QByteArray(), known);
        m_inHeader = false;
        chunk.addBlock(m_block);
        forecast.set(m_block);
    } else if (HeaderLines::opens(line)) {
        m_header.start(line, 0);
        m_inHeader = true;
    } else if (m_inHeader) {
        m_header.add(line);
    }
    return true;
}

/// The block of the header that has ended.
std::shared_ptr<const BlockForecast> ChunkParser::forecastBlock(const QByteArray &columnRow, const KnownState &known)
{
    if (m_block)
        return std::make_shared<BlockForecast>(m_header, columnRow, m_block->state());
    if (!m_lastBlock || m_lastKnown != known || m_lastColumnRow != columnRow || !m_lastHeader.isSame(m_header)) {
        m_lastBlock = std::make_shared<BlockForecast>(m_header, columnRow, *known);
        m_lastHeader = m_header;
        m_lastColumnRow = QByteArray(columnRow.constData(), columnRow.size());
        m_lastKnown = known;
    }
    return m_lastBlock;
}

void ChunkParser::parseRow(ParsedRow &row, ParsedRows &rows)
{
    const LineReader &parser = *m_block->parser();
    const RowForecast &forecast = m_rows[std::size_t(parser.layout().kind)];
    if (parser.parseRow(row, {forecast.newRecord, forecast.newNumbers}, m_splitter, rows)) {
        row.parser = &parser;
    } else {
        const TextView line = row.line;
        row = ParsedRow();
        row.line = line;
    }
}
