#pragma once

#include "datafiles/writing/heldrows.h"
#include "datafiles/writing/plainfileoutput_flags.h"
#include "datafiles/writing/plainfileoutput_match.h"

#include <QByteArray>
#include <QList>

#include <sys/types.h>

class FileCalls;

namespace Spectrometer {

/// What a writer has to know of a day file to continue it: where its last whole row ends, whether the block there has
/// the writer's own header, and which flags that block defines.
class ContinuedFile {
public:
    /// The header must have lines. The rows that are to be passed over go to `held`. Both must outlive this object.
    ContinuedFile(const QList<QByteArray> &header, PassOver passOver, HeldRows &held);

    /// Reads the file from its beginning on, in pieces. False with errno set if that fails.
    bool read(FileCalls &calls, int descriptor);

    off_t size() const { return m_size; }
    /// Behind the last line that has a line feed, or before a last header that has no column row. What follows was cut
    /// off while it was written, and nothing of it counts below.
    off_t soundEnd() const { return m_inHeader ? m_headerBegin : m_linesEnd; }
    bool endsInHeader() const { return m_inHeader; }
    const HeaderMatch &match() const { return m_inHeader ? m_matchBefore : m_match; }
    FlagIds takeFlags() { return std::move(m_inHeader ? m_flagsBefore : m_flags); }

private:
    void extendLine(const char *begin, const char *end);
    void endLine(off_t end);
    void openHeader();
    void holdRow();

    const QList<QByteArray> &m_header;
    const PassOver m_passOver;
    HeldRows &m_held;
    int m_longestHeaderLine = 0;
    QByteArray m_line; ///< as far as it is at hand and matters
    off_t m_size = 0;
    off_t m_linesEnd = 0;
    HeaderMatch m_match;
    FlagIds m_flags; ///< of the block at hand
    bool m_inHeader = false;
    bool m_inBlock = false;     ///< behind a column row
    bool m_flagsColumn = false; ///< of that block
    // Before the header that is open:
    off_t m_headerBegin = 0;
    HeaderMatch m_matchBefore;
    FlagIds m_flagsBefore;
};

} // namespace Spectrometer
