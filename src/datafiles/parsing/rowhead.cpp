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

RowPlace placeRecord(const RowTimes &times, FileReaderState &state, std::shared_ptr<Record> *record)
{
    std::shared_ptr<Record> known = state.records.find(times.begin);
    const RowPlace place = known ? RowPlace::found : RowPlace::made;
    if (known) {
        *record = std::move(known);
    } else if (!state.isAffordable(1, state.electrometerCount, state.variableNames.size())) {
        record->reset();
        return RowPlace::refused;
    } else {
        if (!*record)
            *record = makeRecord(times);
        state.records.add(*record);
    }
    state.widen(**record);
    return place;
}

QString refusedRowText()
{
    return QStringLiteral("Record would hold too many values");
}
