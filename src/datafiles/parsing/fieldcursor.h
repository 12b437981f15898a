#pragma once

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/numberparser.h"

/// Takes the fields of a row one after the other.
class FieldCursor {
public:
    FieldCursor(const FieldSplitter &fields, std::size_t first) : m_fields(fields), m_next(first) {}

    TextView next() { return m_fields[m_next++]; }
    double nextNumber() { return parseField(next(), m_fields.line().data() + m_fields.line().size()); }
    /// The next `count` fields as numbers.
    void numbers(double *out, std::size_t count)
    {
        parseFields(m_fields.line(), m_fields.ends(), m_next, out, count);
        m_next += count;
    }

private:
    const FieldSplitter &m_fields;
    std::size_t m_next;
};
