#pragma once

#include "datafiles/parsing/linereader.h"
#include "datafiles/parsing/oldlineheader.h"

/// Understands one block of an old-style, comma-separated file: its header first, then its rows, each stretch of
/// columns with the ValueReader that the header gave it.
class OldLineReader : public LineReader {
public:
    /// The trimmed header lines behind the first one; the last is the column row. The state must outlive the reader.
    /// Throws FileReaderError.
    OldLineReader(const QList<QByteArray> &lines, FileReaderState *state);

    bool readRow(QByteArray line) override;
    bool parseRow(ParsedRow &row, RowExpectation expected, FieldSplitter &splitter, ParsedRows &rows) const override;
    bool placeRow(ParsedRow &row, ParsedRows &rows) override;

private:
    bool complain(const QString &text);
    bool splitRow(TextView line, FieldSplitter &fields) const;
    void takeMode(Record &record, TextView name) const;
    bool placeSpectrum(const std::shared_ptr<Record> &record, int column,
                       std::shared_ptr<SpectMath::Spectrum> spectrum);

    FileReaderState *m_state;
    OldLineHeader m_header;
    FieldSplitter m_fields; ///< of the row at hand
};
