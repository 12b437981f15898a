#pragma once

#include "datafiles/parsing/rowlayout.h"

#include <QByteArray>
#include <QStringList>

class FieldSplitter;
struct ParsedRow;
struct ParsedRows;
struct RowExpectation;

/// Understands the data rows of one block of a file. A row is read at once, or parsed by one reader, perhaps on another
/// thread, and placed by a second one of a block of the same layout, with the same result.
class LineReader {
public:
    virtual ~LineReader() = default;

    /// Reads one line, without a copy: the bytes are the caller's and last until the next line. True if something was
    /// added to `errors`.
    virtual bool readRow(QByteArray line) = 0;

    /// Parses the row's line, with what it makes of it in `rows`. False if the line must be read by readRow(): all but
    /// sound data rows. Several threads may parse at once, with a splitter each.
    virtual bool parseRow(ParsedRow &row, RowExpectation expected, FieldSplitter &splitter, ParsedRows &rows) const = 0;
    /// Does the rest of what readRow() does, for a row within the limits that was parsed by a reader whose rows are
    /// placeable. The row is used up.
    virtual bool placeRow(ParsedRow &row, ParsedRows &rows) = 0;

    const RowLayout &layout() const { return m_layout; }

    QStringList errors; ///< complaints about the last row; the caller empties it

protected:
    void setLayout(RowLayout &&layout) { m_layout = std::move(layout); }

private:
    RowLayout m_layout;
};
