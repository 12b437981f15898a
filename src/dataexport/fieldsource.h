#pragma once

#include "records/record.h"

#include <QStringList>

namespace DataExport {

class DelimitedLine;

/// The most columns of a table, those of times and mode not counted.
constexpr std::size_t mostColumns = 10'000;

/// A group of neighbouring columns.
class FieldSource {
public:
    FieldSource() = default;
    virtual ~FieldSource() = default;
    FieldSource(const FieldSource &) = delete;
    FieldSource &operator=(const FieldSource &) = delete;

    /// One for each column.
    virtual QStringList titles() const = 0;
    /// Adds the record's fields, as many as there are titles; those that it doesn't have are empty.
    virtual void values(const Record &record, DelimitedLine &line) const = 0;
};

} // namespace DataExport
