#include "datafiles/parsing/newlinereader.h"

#include "datafiles/parsing/parsedrows.h"
#include "datafiles/parsing/rowhead.h"

#include <cstring>

namespace {

using FileKind = NewLineHeader::FileKind;

constexpr int mostFlagIds = 100000; // of one block

bool startsWith(TextView text, const char *begin)
{
    return text.compare(0, std::strlen(begin), begin) == 0;
}

TextView withoutLineEnd(TextView line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    return line;
}

/// 17 times the value of a hexadecimal digit in upper case; -1 for any other character.
int levelOf(char digit)
{
    if (digit >= '0' && digit <= '9')
        return 17 * (digit - '0');
    if (digit >= 'A' && digit <= 'F')
        return 17 * (digit - 'A' + 10);
    return -1;
}

/// Makes room for more flags, a quarter more than there is at least, so that many rows of one moment stay cheap.
void reserveFlags(Record &record, std::size_t more)
{
    const std::size_t wanted = record.flags.size() + more;
    if (wanted > record.flags.capacity())
        record.flags.reserve(std::max(wanted, record.flags.capacity() + record.flags.capacity() / 4));
}

} // namespace

NewLineReader::NewLineReader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                             FileReaderState *state)
    : m_state(state), m_header(firstLine, columnRow, yamlText, *state)
{
    setLayout(m_header.layout(*state));
}

bool NewLineReader::complain(const QString &text)
{
    errors.append(text);
    return true;
}

bool NewLineReader::readRow(QByteArray bytes)
{
    const TextView line = viewOf(bytes);
    if (!line.empty() && line.front() == '#')
        return startsWith(line, "# flag ") && readFlagDefinition(line.substr(7));
    RowTimes times;
    switch (readHead(line, m_fields, &times)) {
    case RowHead::wrongFieldCount:
        return complain(QStringLiteral("%1 fields found, %2 expected")
                            .arg(QString::number(m_fields.size()), QString::number(m_header.fieldCount)));
    case RowHead::noEndTime:
        return complain(QStringLiteral("Failed to read end time"));
    case RowHead::outside:
        return false;
    case RowHead::sound:
        break;
    }
    std::shared_ptr<Record> record;
    switch (placeRecord(times, layout().groups, *m_state, &record)) {
    case RowPlace::refused:
        return complain(refusedRowText());
    case RowPlace::made:
        record->opmode = addOpmode(trimmed(m_fields[2]));
        break;
    case RowPlace::found:
        noteFound(record, trimmed(m_fields[2]));
        break;
    }
    FieldCursor fields(m_fields, 3);
    if (m_header.fileKind == FileKind::spectra)
        return readSpectra(fields, record);
    return readFlags(readValues(fields, RowNumbers::of(*record)), *record);
}

NewLineReader::RowHead NewLineReader::readHead(TextView line, FieldSplitter &fields, RowTimes *times) const
{
    fields.split(withoutLineEnd(line), '\t', m_header.fieldCount + 1);
    if (fields.size() != m_header.fieldCount && fields.size() != m_header.fieldCount + 1)
        return RowHead::wrongFieldCount;
    if (!readRowTimes(fields[0], fields[1], times))
        return RowHead::noEndTime;
    return m_state->isOutside(*times) ? RowHead::outside : RowHead::sound;
}

bool NewLineReader::parseRow(ParsedRow &row, RowExpectation expected, FieldSplitter &splitter, ParsedRows &rows) const
{
    if (!row.line.empty() && row.line.front() == '#')
        return false;
    const RowHead head = readHead(row.line, splitter, &row.times);
    row.isOutside = head == RowHead::outside;
    if (head != RowHead::sound)
        return row.isOutside;
    row.mode = trimmed(splitter[2]);
    FieldCursor fields(splitter, 3);
    const RowNumbers numbers = rows.addNumbers(row, expected, layout());
    if (m_header.fileKind == FileKind::spectra) {
        for (int i = 0; i < m_header.spectra->infos.size(); ++i)
            rows.addSpectrum(row, i, readSpectrum(fields, m_header.spectra->infos[i]->nativePoints().size()));
    } else {
        row.flags = readValues(fields, numbers);
    }
    return true;
}

bool NewLineReader::placeRow(ParsedRow &row, ParsedRows &rows)
{
    const PlacedRow placed = placeParsedRow(row, rows, layout().groups, *m_state);
    switch (placed.place) {
    case RowPlace::refused:
        return complain(refusedRowText());
    case RowPlace::made:
        placed.record->opmode = addOpmode(row.mode);
        break;
    case RowPlace::found:
        noteFound(placed.record, row.mode);
        break;
    }
    if (m_header.fileKind == FileKind::spectra)
        return placeSpectra(row, rows, placed.record);
    if (layout().groups.any() && !placed.hasNumbers)
        copyValues(rows.numbersOf(row), RowNumbers::of(*placed.record));
    return readFlags(row.flags, *placed.record);
}

bool NewLineReader::readFlagDefinition(TextView text)
{
    text = trimmed(text);
    const std::size_t colon = text.find(':');
    if (colon == TextView::npos)
        return complain(QStringLiteral("Invalid flag definition line"));
    const TextView id = withoutQuotes(trimmed(text.substr(0, colon)));
    const auto flag = m_state->flagOf(stringOf(trimmed(text.substr(colon + 1))));
    if (!flag || m_flagIds.size() >= mostFlagIds)
        return complain(QStringLiteral("Too many flag definitions"));
    m_flagIds.insert(QByteArray(id.data(), int(id.size())), flag);
    return false;
}

int NewLineReader::addOpmode(TextView name)
{
    if (m_lastModeIndex < 0 || viewOf(m_lastMode) != name) {
        m_lastMode = QByteArray(name.data(), int(name.size()));
        m_lastModeIndex = m_state->addOpmode(stringOf(name));
    }
    return m_lastModeIndex;
}

void NewLineReader::noteFound(const std::shared_ptr<Record> &record, TextView mode)
{
    if (m_state->order.isChecking())
        m_state->noteFound(record, stringOf(mode));
}

/// Reads the numbers; the result is the field of flags, if the row has one.
TextView NewLineReader::readValues(FieldCursor &fields, const RowNumbers &numbers) const
{
    const bool isRecords = m_header.fileKind == FileKind::records;
    if (m_header.fileKind == FileKind::currents || isRecords) {
        fields.numbers(numbers.currents, m_header.electrometers);
        fields.numbers(numbers.currentVariances, m_header.electrometers);
        fields.numbers(numbers.rawCurrents, m_header.electrometers);
    }
    if (m_header.fileKind == FileKind::diagnostics || isRecords) {
        fields.numbers(numbers.voltages, m_header.electrometers);
        if (m_header.variableSlots)
            for (const int slot : qAsConst(*m_header.variableSlots))
                numbers.variables[slot] = fields.nextNumber();
    }
    return m_header.hasFlagsField() ? fields.next() : TextView();
}

/// Copies what readValues() reads.
void NewLineReader::copyValues(const RowNumbers &from, const RowNumbers &to) const
{
    const std::size_t count = m_header.electrometers;
    const bool isRecords = m_header.fileKind == FileKind::records;
    if (m_header.fileKind == FileKind::currents || isRecords) {
        std::copy_n(from.currents, count, to.currents);
        std::copy_n(from.currentVariances, count, to.currentVariances);
        std::copy_n(from.rawCurrents, count, to.rawCurrents);
    }
    if (m_header.fileKind == FileKind::diagnostics || isRecords) {
        std::copy_n(from.voltages, count, to.voltages);
        if (m_header.variableSlots)
            for (const int slot : qAsConst(*m_header.variableSlots))
                to.variables[slot] = from.variables[slot];
    }
}

bool NewLineReader::readFlags(TextView field, Record &record)
{
    if (!m_header.hasFlagsField())
        return false;
    const std::size_t before = record.flags.size();
    const bool complained =
        m_header.fileKind == FileKind::diagnostics ? readFlagLevels(field, record) : readFlagIds(field, record);
    if (record.flags.size() > before)
        m_state->order.noteFlags(record, before);
    return complained;
}

bool NewLineReader::readFlagLevels(TextView levels, Record &record)
{
    if (levels.size() != std::size_t(m_header.flagLevels->size()))
        return complain(QStringLiteral("Ignoring invalid flags data"));
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const auto &entry = m_header.flagLevels->at(int(i));
        const int level = levelOf(levels[i]);
        if (level >= 0 && level > entry.threshold)
            record.flags.push_back(entry.flag);
    }
    return false;
}

bool NewLineReader::readFlagIds(TextView ids, Record &record)
{
    if (ids.empty())
        return false;
    reserveFlags(record, std::size_t(std::count(ids.begin(), ids.end(), '!')));
    bool unknown = false;
    while (!ids.empty()) {
        const TextView id = ids.substr(0, ids.find('!'));
        ids.remove_prefix(std::min(id.size() + 1, ids.size()));
        if (id.empty())
            continue;
        const auto flag = m_flagIds.constFind(bytesOf(id));
        if (flag != m_flagIds.constEnd())
            record.flags.push_back(*flag);
        else
            unknown = true;
    }
    return unknown && complain(QStringLiteral("Encounterend undefined flag ids"));
}

/// Counts the memory of a row's spectra. False if they are more than the read may hold.
bool NewLineReader::takeSpectra()
{
    const auto &infos = m_header.spectra->infos;
    if (m_spectrumBytes == 0 && m_state->takeSeries(infos))
        for (const auto &info : infos)
            m_spectrumBytes += MemoryBudget::ofSpectrum(info->nativePoints().size());
    return (m_spectrumBytes > 0 || infos.isEmpty()) && m_state->takeSpectra(m_spectrumBytes);
}

bool NewLineReader::readSpectra(FieldCursor &fields, const std::shared_ptr<Record> &record)
{
    if (!takeSpectra())
        return complain(refusedRowText());
    if (record->spectra.empty())
        record->spectra.reserve(std::size_t(m_header.spectra->infos.size()));
    for (const auto &info : qAsConst(m_header.spectra->infos))
        m_state->addSpectrum(record, info, readSpectrum(fields, info->nativePoints().size()));
    return false;
}

bool NewLineReader::placeSpectra(const ParsedRow &row, ParsedRows &rows, const std::shared_ptr<Record> &record)
{
    if (!takeSpectra())
        return complain(refusedRowText());
    if (record->spectra.empty())
        record->spectra.reserve(row.spectrumCount);
    for (std::size_t i = row.firstSpectrum; i < row.firstSpectrum + row.spectrumCount; ++i)
        m_state->addSpectrum(record, m_header.spectra->infos[rows.spectra[i].column],
                             std::move(rows.spectra[i].spectrum));
    return false;
}

std::shared_ptr<SpectMath::Spectrum> NewLineReader::readSpectrum(FieldCursor &fields, std::size_t points) const
{
    auto spectrum = makeDiagonalSpectrum(points);
    fields.numbers(spectrum->concentrations.data().begin(), points);
    double *variances = spectrum->covariances.data().begin(); // a band of the diagonal alone
    fields.numbers(variances, points);
    for (std::size_t i = 0; i < points; ++i)
        variances[i] *= variances[i];
    for (const auto variable : qAsConst(m_header.spectra->inversionVariables)) {
        const double value = fields.nextNumber();
        switch (variable) {
        case HeaderSections::InversionVariable::rmsError:
            spectrum->currentRmsError = value;
            break;
        case HeaderSections::InversionVariable::meanAbsError:
            spectrum->currentMeanAbsError = value;
            break;
        case HeaderSections::InversionVariable::totalError:
            spectrum->currentTotalError = value;
            break;
        case HeaderSections::InversionVariable::unknown:
            break;
        }
    }
    return spectrum;
}
