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

RowPlace placeRecord(const RowTimes &times, NumberGroups groups, FileReaderState &state,
                     std::shared_ptr<Record> *record)
{
    *record = state.records.find(times.begin);
    const bool known = *record != nullptr;
    if (!known) {
        if (!state.isAffordable(1, state.electrometerCount, state.variableNames.size()))
            return RowPlace::refused;
        *record = makeRecord(times);
        state.records.add(*record);
    } else {
        state.order.noteFound(**record, times, groups);
    }
    state.order.noteRow(times.begin, groups);
    state.widen(**record, groups);
    return known ? RowPlace::found : RowPlace::made;
}

PlacedRow placeParsedRow(ParsedRow &row, ParsedRows &rows, NumberGroups groups, FileReaderState &state)
{
    PlacedRow placed{RowPlace::found, state.records.find(row.times.begin), false};
    if (!placed.record) {
        if (!state.isAffordable(1, state.electrometerCount, state.variableNames.size()))
            return {RowPlace::refused, nullptr, false};
        placed.place = RowPlace::made;
        placed.record = row.record ? std::move(row.record) : makeRecord(row.times);
        state.records.add(placed.record);
        ++rows.newRecords;
    } else {
        state.order.noteFound(*placed.record, row.times, groups);
    }
    state.order.noteRow(row.times.begin, groups);
    if (!hasNumbers(*placed.record, groups)) {
        placed.hasNumbers = row.hasOwnNumbers;
        if (row.hasOwnNumbers)
            moveNumbers(row.ownNumbers, *placed.record, groups);
        ++rows.newNumbers;
    }
    state.widen(*placed.record, groups);
    return placed;
}

QString refusedRowText()
{
    return QStringLiteral("Record would hold too many values");
}
