#pragma once

#include "datafiles/parsing/fieldcursor.h"
#include "datafiles/parsing/linereader.h"
#include "datafiles/parsing/newlineheader.h"
#include "datafiles/parsing/parsedrows.h"

/// Understands one block of a current-format day file: its header first, then its rows, by position.
class NewLineReader : public LineReader {
public:
    /// Reads the header: its magic line, the YAML text and the column row, of which only the ending matters. The state
    /// must outlive the reader. Throws FileReaderError.
    NewLineReader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                  FileReaderState *state);

    bool readRow(QByteArray line) override;
    bool parseRow(ParsedRow &row, RowExpectation expected, FieldSplitter &splitter, ParsedRows &rows) const override;
    bool placeRow(ParsedRow &row, ParsedRows &rows) override;

private:
    enum class RowHead { sound, outside, wrongFieldCount, noEndTime };

    bool complain(const QString &text);
    bool readFlagDefinition(TextView text);
    RowHead readHead(TextView line, FieldSplitter &fields, RowTimes *times) const;
    void noteFound(const std::shared_ptr<Record> &record, TextView mode);
    int addOpmode(TextView name);
    TextView readValues(FieldCursor &fields, const RowNumbers &numbers) const;
    void copyValues(const RowNumbers &from, const RowNumbers &to) const;
    bool readFlags(TextView field, Record &record);
    bool readFlagLevels(TextView levels, Record &record);
    bool readFlagIds(TextView ids, Record &record);
    bool takeSpectra();
    bool readSpectra(FieldCursor &fields, const std::shared_ptr<Record> &record);
    bool placeSpectra(const ParsedRow &row, ParsedRows &rows, const std::shared_ptr<Record> &record);
    std::shared_ptr<SpectMath::Spectrum> readSpectrum(FieldCursor &fields, std::size_t points) const;

    FileReaderState *m_state;
    NewLineHeader m_header;
    std::size_t m_spectrumBytes = 0; ///< of one row; 0 before their series are counted
    QHash<QByteArray, std::shared_ptr<Spectrometer::RecordFlag>> m_flagIds; ///< as defined in this block
    FieldSplitter m_fields;
    QByteArray m_lastMode; ///< the mode text of the last new record, and its index
    int m_lastModeIndex = -1;
};
