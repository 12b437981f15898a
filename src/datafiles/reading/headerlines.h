#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/parsing/linereader.h"

#include <QByteArray>

#include <memory>

/// Gathers the lines of one header, up to 16 MB of them, and makes the line reader that they ask for.
class HeaderLines {
public:
    /// Whether the line opens a header.
    static bool opens(const QByteArray &line);
    /// Whether the line tells columns, as the last one of a header should.
    static bool isColumnRow(const QByteArray &line);

    /// Starts anew with the opening line. Copies it, as all lines.
    void start(const QByteArray &line, int row);
    void add(const QByteArray &line);
    int firstRow() const { return m_firstRow; }
    /// Whether another header has the same lines, both being of some ten KB at the most.
    bool isSame(const HeaderLines &other) const;

    /// The reader of the rows that follow; the column row is the header's last line. The first line tells the format.
    /// Throws FileReaderError.
    std::unique_ptr<LineReader> makeReader(const QByteArray &columnRow, FileReaderState *state) const;

private:
    std::unique_ptr<LineReader> makeOldReader(const QByteArray &columnRow, FileReaderState *state) const;

    int m_firstRow = 0;
    QByteArray m_first;
    QByteArray m_rest; ///< the lines between the first one and the column row, each with its line feed
    bool m_tooLong = false;
};
