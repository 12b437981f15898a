#pragma once

#include "records/record.h"

/// The colour marks of a record: kept for all of them side by side, since plots ask for them of every record.
struct RecordMarks {
    std::int32_t opmode = -1;
    bool regular = true;
    bool provisional = false;

    static RecordMarks of(const Record &record) { return {record.opmode, record.regular, record.provisional}; }
};
