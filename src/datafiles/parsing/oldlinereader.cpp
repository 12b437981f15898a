#include "datafiles/parsing/oldlinereader.h"

#include "datafiles/parsing/rowhead.h"

OldLineReader::OldLineReader(const QList<QByteArray> &lines, FileReaderState *state)
    : m_state(state), m_header(lines, state)
{
}

bool OldLineReader::complain(const QString &text)
{
    errors.append(text);
    return true;
}

bool OldLineReader::readRow(QByteArray line)
{
    m_fields.split(viewOf(line), ',', std::size_t(m_header.fieldCount()));
    if (m_fields.size() != std::size_t(m_header.fieldCount()))
        return complain(QStringLiteral("%1 fields found, %2 expected")
                            .arg(QString::number(m_fields.size()), QString::number(m_header.fieldCount())));
    RowTimes times;
    if (!readRowTimes(m_fields[0], m_fields[1], &times))
        return complain(QStringLiteral("Failed to read end time"));
    if (m_state->isOutside(times))
        return false;
    std::shared_ptr<Record> record;
    if (placeRow(times, *m_state, &record) == RowPlace::refused)
        return complain(refusedRowText());
    if (m_header.hasOpmode() && record->opmode == -1) // a mode that no header told stays unknown
        record->opmode = m_state->knownOpmode(stringOf(trimmed(m_fields[2])));
    bool complained = false;
    for (const auto &reader : m_header.valueReaders()) {
        try {
            reader->read(m_fields, record);
        } catch (const ValueParsingError &error) {
            complained = complain(error.message());
        }
    }
    return complained;
}
