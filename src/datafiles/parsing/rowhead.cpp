#include "datafiles/parsing/rowhead.h"

#include "util/timeparse.h"

bool readRowTimes(TextView begin, TextView end, RowTimes *times)
{
    *times = RowTimes();
    const TextView endText = trimmed(end);
    parseTime(endText.data(), int(endText.size()), &times->end, &times->endUtcOffset);
    if (isMissing(times->end))
        return false;
    const TextView beginText = trimmed(begin);
    parseTime(beginText.data(), int(beginText.size()), &times->begin, &times->beginUtcOffset);
    if (isMissing(times->begin)) {
        times->begin = times->end;
        times->beginUtcOffset = times->endUtcOffset;
    }
    return true;
}

RowPlace placeRow(const RowTimes &times, FileReaderState &state, std::shared_ptr<Record> *record)
{
    *record = state.records.find(times.begin);
    const bool known = *record != nullptr;
    if (!known) {
        if (!state.isAffordable(1, state.electrometerCount, state.variableNames.size()))
            return RowPlace::refused;
        *record = state.makeRecord(times);
        state.records.add(*record);
    }
    state.widen(**record);
    return known ? RowPlace::found : RowPlace::made;
}

QString refusedRowText()
{
    return QStringLiteral("Record would hold too many values");
}
