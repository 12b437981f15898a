#pragma once

#include "datafiles/parsing/newrecord.h"

#include <cstddef>
#include <vector>

/// How the rows of a block lie, for a comparison with those of another block.
struct RowLayout {
    static constexpr int kinds = 6; ///< five of the current format, and the old-style one
    static constexpr int oldKind = 5;

    int kind = 0;
    std::vector<int> columns;      ///< numbers that are equal if and only if the columns have the same meaning
    NumberGroups groups;           ///< that its rows hold
    std::size_t electrometers = 0; ///< the width of a record at the time of the header
    std::size_t variables = 0;
};
