#include "datafiles/parsing/oldlinereader.h"

#include "datafiles/parsing/rowhead.h"

OldLineReader::OldLineReader(const QList<QByteArray> &lines, FileReaderState *state)
    : m_state(state), m_header(lines, state)
{
    setLayout(m_header.layout());
}

bool OldLineReader::complain(const QString &text)
{
    errors.append(text);
    return true;
}

bool OldLineReader::splitRow(TextView line, FieldSplitter &fields) const
{
    fields.split(line, ',', std::size_t(m_header.fieldCount()));
    return fields.size() == std::size_t(m_header.fieldCount());
}

bool OldLineReader::readRow(QByteArray line)
{
    if (!splitRow(viewOf(line), m_fields))
        return complain(QStringLiteral("%1 fields found, %2 expected")
                            .arg(QString::number(m_fields.size()), QString::number(m_header.fieldCount())));
    RowTimes times;
    if (!readRowTimes(m_fields[0], m_fields[1], &times))
        return complain(QStringLiteral("Failed to read end time"));
    if (m_state->isOutside(times))
        return false;
    m_state->order.contradict(); // a later row may tell the mode that this one doesn't
    std::shared_ptr<Record> record;
    if (placeRecord(times, layout().groups, *m_state, &record) == RowPlace::refused)
        return complain(refusedRowText());
    if (m_header.hasOpmode())
        takeMode(*record, trimmed(m_fields[2]));
    const auto &readers = m_header.valueReaders();
    bool complained = false;
    for (int i = 0; i < readers.size(); ++i) {
        readers[i]->read(m_fields, RowNumbers::of(*record));
        try {
            complained = placeSpectrum(record, i, readers[i]->readSpectrum(m_fields)) || complained;
        } catch (const ValueParsingError &error) {
            complained = complain(error.message());
        }
    }
    return complained;
}

/// A mode that no header told stays unknown.
void OldLineReader::takeMode(Record &record, TextView name) const
{
    if (record.opmode == -1)
        record.opmode = m_state->knownOpmode(stringOf(name));
}

bool OldLineReader::placeSpectrum(const std::shared_ptr<Record> &record, int column,
                                  std::shared_ptr<SpectMath::Spectrum> spectrum)
{
    if (!spectrum)
        return false;
    const auto info = m_header.valueReaders()[column]->spectrumInfo();
    if (!m_state->takeSeries({info}) ||
        !m_state->takeSpectra(MemoryBudget::ofSpectrum(spectrum->concentrations.size())))
        return complain(refusedRowText());
    m_state->addSpectrum(record, info, std::move(spectrum));
    return false;
}

bool OldLineReader::parseRow(ParsedRow &row, RowExpectation expected, FieldSplitter &fields, ParsedRows &rows) const
{
    if (!splitRow(row.line, fields) || !readRowTimes(fields[0], fields[1], &row.times))
        return false;
    row.isOutside = m_state->isOutside(row.times);
    if (row.isOutside)
        return true;
    if (m_header.hasOpmode())
        row.mode = trimmed(fields[2]);
    const auto &readers = m_header.valueReaders();
    const RowNumbers numbers = rows.addNumbers(row, expected, layout());
    try {
        for (int i = 0; i < readers.size(); ++i) {
            readers[i]->read(fields, numbers);
            if (auto spectrum = readers[i]->readSpectrum(fields))
                rows.addSpectrum(row, i, std::move(spectrum));
        }
    } catch (const ValueParsingError &) {
        return false;
    }
    return true;
}

bool OldLineReader::placeRow(ParsedRow &row, ParsedRows &rows)
{
    m_state->order.contradict();
    const PlacedRow placed = placeParsedRow(row, rows, layout().groups, *m_state);
    if (placed.place == RowPlace::refused)
        return complain(refusedRowText());
    if (m_header.hasOpmode())
        takeMode(*placed.record, row.mode);
    if (layout().groups.any() && !placed.hasNumbers)
        for (const auto &reader : m_header.valueReaders())
            reader->copy(rows.numbersOf(row), RowNumbers::of(*placed.record));
    bool complained = false;
    for (std::size_t i = row.firstSpectrum; i < row.firstSpectrum + row.spectrumCount; ++i)
        complained =
            placeSpectrum(placed.record, rows.spectra[i].column, std::move(rows.spectra[i].spectrum)) || complained;
    return complained;
}
