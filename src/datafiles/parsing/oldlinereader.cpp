#include "datafiles/parsing/oldlinereader.h"

#include "datafiles/parsing/rowhead.h"

bool OldLineReader::readRow(QByteArray line)
{
    const int found = line.count(',') + 1;
    if (found != m_fieldCount) {
        errors.append(
            QStringLiteral("%1 fields found, %2 expected").arg(QString::number(found), QString::number(m_fieldCount)));
        return true;
    }
    const QList<QByteArray> fields = line.split(',');
    RowTimes times;
    if (!readRowTimes(viewOf(fields[0]), viewOf(fields[1]), &times)) {
        errors.append(QStringLiteral("Failed to read end time"));
        return true;
    }
    if (m_state->isOutside(times))
        return false;
    std::shared_ptr<Record> record;
    if (placeRow(times, *m_state, &record) == RowPlace::refused) {
        errors.append(refusedRowText());
        return true;
    }
    if (m_hasOpmode && record->opmode == -1) // a mode that no header told stays unknown
        record->opmode = m_state->knownOpmode(QString::fromUtf8(fields[2].trimmed()));
    bool complained = false;
    for (const auto &reader : qAsConst(m_valueReaders)) {
        try {
            reader->read(fields.mid(reader->firstColumn, reader->fieldCount), record, record);
        } catch (const ValueParsingError &error) {
            errors.append(error.message());
            complained = true;
        }
    }
    return complained;
}
