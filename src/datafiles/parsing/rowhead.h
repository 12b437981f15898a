#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/parsing/parsedrows.h"
#include "datafiles/parsing/textview.h"

/// Reads the two time fields of a row. A begin that can't be read takes the end's time and offset. False if the end
/// can't be read.
bool readRowTimes(TextView begin, TextView end, RowTimes *times);

/// The result of the search for a row's record.
enum class RowPlace { found, made, refused };

/// The record of a row: the one that begins at the same time, with any end, or a new one, which has no mode yet. Its
/// vectors of the row's groups are as wide as the present metadata. Refused, with a null record, when a new record
/// isn't affordable.
RowPlace placeRecord(const RowTimes &times, NumberGroups groups, FileReaderState &state,
                     std::shared_ptr<Record> *record);
/// The same for a row that was parsed, whose own record may become the new one, and whose own numbers the record's.
struct PlacedRow {
    RowPlace place;
    std::shared_ptr<Record> record;
    bool hasNumbers; ///< of the row already
};
PlacedRow placeParsedRow(ParsedRow &row, ParsedRows &rows, NumberGroups groups, FileReaderState &state);

/// The complaint about a row that was refused.
QString refusedRowText();
