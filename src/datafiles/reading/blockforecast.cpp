#include "datafiles/reading/blockforecast.h"

#include "datafiles/parsing/filereadererror.h"

BlockForecast::BlockForecast(const HeaderLines &header, const QByteArray &columnRow, const FileReaderState &known)
    : m_state(known.makeForecast())
{
    const Log::Silence silence; // what there is to say is said in the block's turn
    try {
        m_reader = header.makeReader(columnRow, m_state.get());
    } catch (const FileReaderError &) {
    }
    m_memory = m_state->budget.held() - known.budget.held();
}
