#include "datafiles/parsing/newlinereader.h"

#include "datafiles/parsing/rowhead.h"

#include <cstring>

namespace {

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

    m_fields.split(withoutLineEnd(line), '\t', m_header.fieldCount + 1);
    if (m_fields.size() != m_header.fieldCount && m_fields.size() != m_header.fieldCount + 1)
        return complain(QStringLiteral("%1 fields found, %2 expected")
                            .arg(QString::number(m_fields.size()), QString::number(m_header.fieldCount)));
    RowTimes times;
    if (!readRowTimes(m_fields[0], m_fields[1], &times))
        return complain(QStringLiteral("Failed to read end time"));
    if (m_state->isOutside(times))
        return false;
    std::shared_ptr<Record> record;
    switch (placeRow(times, *m_state, &record)) {
    case RowPlace::refused:
        return complain(refusedRowText());
    case RowPlace::made:
        record->opmode = addOpmode(trimmed(m_fields[2]));
        break;
    case RowPlace::found:
        break;
    }
    return readValues(record);
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

bool NewLineReader::readValues(const std::shared_ptr<Record> &record)
{
    FieldCursor fields(m_fields, 3);
    switch (m_header.fileKind) {
    case NewLineHeader::FileKind::currents:
        readElectrometers(fields, *record);
        return false;
    case NewLineHeader::FileKind::diagnostics:
        readVoltages(fields, *record);
        return readVariables(fields, *record);
    case NewLineHeader::FileKind::spectra:
        return readSpectra(fields, record);
    case NewLineHeader::FileKind::flags:
        return readFlagIds(fields.next(), *record);
    case NewLineHeader::FileKind::records:
        readElectrometers(fields, *record);
        readVoltages(fields, *record);
        readVariables(fields, *record);
        return !m_header.noFlagsColumn && readFlagIds(fields.next(), *record);
    }
    return false;
}

void NewLineReader::readElectrometers(FieldCursor &fields, Record &record) const
{
    fields.numbers(record.currents.data().begin(), m_header.electrometers);
    fields.numbers(record.currentVariances.data().begin(), m_header.electrometers);
    fields.numbers(record.rawCurrents.data().begin(), m_header.electrometers);
}

void NewLineReader::readVoltages(FieldCursor &fields, Record &record) const
{
    fields.numbers(record.voltages.data().begin(), m_header.electrometers);
}

bool NewLineReader::readVariables(FieldCursor &fields, Record &record)
{
    if (m_header.variableSlots) {
        double *variables = record.variables.data().begin();
        for (const int slot : qAsConst(*m_header.variableSlots))
            variables[slot] = fields.nextNumber();
    }
    return m_header.flagLevels && readFlagLevels(fields.next(), record);
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

bool NewLineReader::readSpectra(FieldCursor &fields, const std::shared_ptr<Record> &record)
{
    if (m_spectrumBytes == 0 && m_state->takeSeries(m_header.spectra->infos))
        for (const auto &info : qAsConst(m_header.spectra->infos))
            m_spectrumBytes += MemoryBudget::ofSpectrum(info->nativePoints().size());
    if ((m_spectrumBytes == 0 && !m_header.spectra->infos.isEmpty()) || !m_state->takeSpectra(m_spectrumBytes))
        return complain(refusedRowText());
    if (record->spectra.empty())
        record->spectra.reserve(std::size_t(m_header.spectra->infos.size()));
    for (const auto &info : qAsConst(m_header.spectra->infos)) {
        const auto spectrum = readSpectrum(fields, info);
        record->spectra.push_back(spectrum);
        m_state->records.addSpectrum(record, spectrum);
    }
    return false;
}

std::shared_ptr<SpectMath::Spectrum> NewLineReader::readSpectrum(FieldCursor &fields,
                                                                 const SpectMath::SpectrumInfoPointer &info) const
{
    auto spectrum = m_state->makeSpectrum(info);
    const std::size_t points = spectrum->concentrations.size();
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
