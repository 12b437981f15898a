#pragma once

#include "datafiles/parsing/textview.h"

#include <cstdint>
#include <vector>

/// One line cut into fields at a separator, as views into the line. Reused from line to line, so that a row allocates
/// nothing. A line has one field more than separators; an empty field is a field.
class FieldSplitter {
public:
    /// Cuts the line. No more than `limit` fields can be asked for afterwards; all are counted.
    void split(TextView line, char separator, std::size_t limit);

    std::size_t size() const { return m_count; }
    TextView operator[](std::size_t index) const
    {
        const std::uint32_t begin = index ? m_ends[index - 1] + 1 : 0;
        return m_line.substr(begin, m_ends[index] - begin);
    }
    TextView line() const { return m_line; }
    /// One past each field, counted from the begin of the line.
    const std::uint32_t *ends() const { return m_ends.data(); }

private:
    TextView m_line;
    std::vector<std::uint32_t> m_ends; ///< one past each field, counted from the begin of the line
    std::size_t m_count = 0;
};
